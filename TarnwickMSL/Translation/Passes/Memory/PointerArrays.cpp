#include "TarnwickMSL/Translation/Passes/Memory/PointerArrays.h"

#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/Module.h>
#include <llvm/IR/Operator.h>

namespace tarnwick::msl {

using namespace llvm;

constexpr std::uint64_t mostElements = 16;

static bool holdsPointers(const Type* type) {
    if (auto* record = dyn_cast<StructType>(type))
        return any_of(record->elements(), holdsPointers);
    return type->isArrayTy() ? holdsPointers(type->getArrayElementType()) : type->isPointerTy();
}

namespace {

// base + offset + index * scale, in bytes.
struct Step {
    std::int64_t offset = 0, scale = 0;
    Value* index = nullptr;
};

// Returns no step if more than one index is not constant.
std::optional<Step> stepOf(Value* pointer, const AllocaInst& base, const DataLayout& layout) {
    MapVector<Value*, APInt> scales;
    APInt offset(32, 0);
    while (auto* step = dyn_cast<GEPOperator>(pointer)) {
        if (!step->collectOffset(layout, 32, scales, offset))
            return std::nullopt;
        pointer = step->getPointerOperand();
    }
    if (pointer != &base || scales.size() > 1)
        return std::nullopt;
    Step found{.offset = offset.getSExtValue()};
    if (!scales.empty())
        found = {found.offset, scales.front().second.getSExtValue(), scales.front().first};
    return found;
}

class Splitter {
  public:
    Splitter(AllocaInst& base, const DataLayout& layout)
        : base_(base), layout_(layout),
          bytes_(static_cast<std::int64_t>(layout.getTypeAllocSize(base.getAllocatedType()))) {}

    bool run();

  private:
    bool collect(Value* pointer);
    std::int64_t elements(const Step& step, Type* type) const;
    Value* at(IRBuilder<>& builder, const Step& step, std::int64_t n) const;
    void split(LoadInst& load, const Step& step);
    void split(StoreInst& store, const Step& step);

    AllocaInst& base_;
    const DataLayout& layout_;
    std::int64_t bytes_;
    SmallVector<std::pair<Instruction*, Step>, 8> moving_; // accesses by an index of run time
};

// Every use must be a load or a store at a known step.
bool Splitter::collect(Value* pointer) {
    return all_of(pointer->users(), [&](User* user) {
        if (isa<GetElementPtrInst>(user))
            return collect(user);
        auto* store = dyn_cast<StoreInst>(user);
        bool isAccess = isa<LoadInst>(user) || (store && store->getPointerOperand() == pointer);
        auto step = isAccess ? stepOf(pointer, base_, layout_) : std::nullopt;
        if (!step)
            return false;
        if (step->index)
            moving_.push_back({cast<Instruction>(user), *step});
        return !step->index || elements(*step, getLoadStoreType(user)) > 0;
    });
}

// How many elements the index may mean; 0 for too many.
std::int64_t Splitter::elements(const Step& step, Type* type) const {
    auto size = static_cast<std::int64_t>(layout_.getTypeStoreSize(type));
    if (step.scale <= 0 || step.offset < 0 || step.offset + size > bytes_)
        return 0;
    std::int64_t count = (bytes_ - size - step.offset) / step.scale + 1;
    return count <= static_cast<std::int64_t>(mostElements) ? count : 0;
}

Value* Splitter::at(IRBuilder<>& builder, const Step& step, std::int64_t n) const {
    return builder.CreateConstGEP1_64(builder.getInt8Ty(), &base_,
                                      static_cast<std::uint64_t>(step.offset + n * step.scale));
}

void Splitter::split(LoadInst& load, const Step& step) {
    IRBuilder<> builder(&load);
    Value* chosen = nullptr;
    for (std::int64_t n = 0; n < elements(step, load.getType()); ++n) {
        Value* one = builder.CreateLoad(load.getType(), at(builder, step, n));
        Value* isIt = builder.CreateICmpEQ(
            step.index, ConstantInt::get(step.index->getType(), static_cast<std::uint64_t>(n)));
        chosen = chosen ? builder.CreateSelect(isIt, one, chosen) : one;
    }
    load.replaceAllUsesWith(chosen);
    load.eraseFromParent();
}

void Splitter::split(StoreInst& store, const Step& step) {
    IRBuilder<> builder(&store);
    Type* type = store.getValueOperand()->getType();
    for (std::int64_t n = 0; n < elements(step, type); ++n) {
        Value* place = at(builder, step, n);
        Value* isIt = builder.CreateICmpEQ(
            step.index, ConstantInt::get(step.index->getType(), static_cast<std::uint64_t>(n)));
        builder.CreateStore(
            builder.CreateSelect(isIt, store.getValueOperand(), builder.CreateLoad(type, place)),
            place);
    }
    store.eraseFromParent();
}

bool Splitter::run() {
    if (!collect(&base_) || moving_.empty())
        return false;
    for (auto& [access, step] : moving_) {
        if (auto* load = dyn_cast<LoadInst>(access))
            split(*load, step);
        else
            split(*cast<StoreInst>(access), step);
    }
    return true;
}

} // namespace

bool splitPointerArrays(Function& main) {
    const DataLayout& layout = main.getParent()->getDataLayout();
    SmallVector<AllocaInst*, 4> holders;
    for (Instruction& instruction : instructions(main))
        if (auto* local = dyn_cast<AllocaInst>(&instruction);
            local && holdsPointers(local->getAllocatedType()))
            holders.push_back(local);
    bool isChanged = false;
    for (AllocaInst* holder : holders)
        isChanged |= Splitter(*holder, layout).run();
    return isChanged;
}

} // namespace tarnwick::msl
