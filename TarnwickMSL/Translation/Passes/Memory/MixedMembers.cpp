#include "TarnwickMSL/Translation/Passes/Memory/MixedMembers.h"

#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/ADT/MapVector.h>
#include <llvm/ADT/SetVector.h>
#include <llvm/Analysis/ConstantFolding.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/Instructions.h>
#include <llvm/IR/Module.h>
#include <llvm/IR/Operator.h>

#include <numeric>

namespace tarnwick::msl {

using namespace llvm;

// The member or the element of the type that contains the offset: its type and its start.
static std::pair<Type*, std::int64_t> partAt(Type* type, std::int64_t offset,
                                             const DataLayout& layout) {
    if (auto* record = dyn_cast<StructType>(type)) {
        const StructLayout& members = *layout.getStructLayout(record);
        const unsigned member =
            members.getElementContainingOffset(static_cast<std::uint64_t>(offset));
        return {record->getElementType(member),
                static_cast<std::int64_t>(members.getElementOffset(member).getFixedValue())};
    }
    Type* element = type->isArrayTy() ? type->getArrayElementType() : type->getScalarType();
    const auto size = static_cast<std::int64_t>(layout.getTypeAllocSize(element));
    return {element, size ? offset / size * size : 0};
}

bool areOfOneArray(Type* type, ArrayRef<std::int64_t> offsets, std::int64_t step,
                   std::int64_t largest, const DataLayout& layout) {
    std::int64_t start = 0;
    std::int64_t bytes = 0; // of the arrays in arrays around the place; zero: it is in none
    while (type->isAggregateType() || type->isVectorTy()) {
        const auto end = start + static_cast<std::int64_t>(layout.getTypeAllocSize(type));
        if (any_of(offsets, [&](std::int64_t each) { return each < start || each >= end; }))
            return false;
        const auto [part, at] = partAt(type, offsets.front() - start, layout);
        const auto size = static_cast<std::int64_t>(layout.getTypeAllocSize(part));
        if (type->isStructTy() && type->getStructNumElements() > 1)
            bytes = 0;
        else if (bytes == 0)
            bytes = end - start;
        if (!type->isStructTy() && size && step % size == 0)
            return largest < bytes;
        start += at;
        type = part;
    }
    return all_of(offsets, [&](std::int64_t each) { return each == offsets.front(); });
}

namespace {

// The places of one variable that a chosen pointer may point to.
struct Places {
    SmallVector<std::int64_t, 4> offsets; // constant bytes
    std::int64_t step = 0;                // the common factor of all that is added to the first
    std::int64_t largest = 0;             // of the numbers of bytes that one unit of an index adds
};

// Whether the variable has a type that may change.
bool isOwn(const Value* root) {
    auto* global = dyn_cast<GlobalVariable>(root);
    return isa<AllocaInst>(root) ||
           (global && global->hasLocalLinkage() && global->hasInitializer());
}

class Mixing {
  public:
    explicit Mixing(Function& main);
    // Variables with places in several members.
    const SmallSetVector<Value*, 4>& variables() const { return found_; }

  private:
    void note(ArrayRef<Value*> pointers);
    void add(Value* leaf, MapVector<Value*, Places>& to) const;

    const DataLayout& layout_;
    SmallSetVector<Value*, 4> found_;
};

// A pointer that is read from memory may be each one that is stored.
Mixing::Mixing(Function& main) : layout_(main.getParent()->getDataLayout()) {
    SmallVector<Value*, 8> stored;
    bool makesPointers = false;
    for (Instruction& instruction : instructions(main)) {
        Value* value = nullptr;
        if (auto* store = dyn_cast<StoreInst>(&instruction))
            value = store->getValueOperand();
        else if (auto* number = dyn_cast<PtrToIntInst>(&instruction))
            value = number->getPointerOperand();
        if (value && value->getType()->isPointerTy())
            stored.push_back(value);
        makesPointers |=
            isa<LoadInst, IntToPtrInst>(instruction) && instruction.getType()->isPointerTy();
        if (isa<PHINode, SelectInst>(instruction) && instruction.getType()->isPointerTy())
            note({&instruction});
    }
    if (makesPointers)
        note(stored);
}

void Mixing::add(Value* leaf, MapVector<Value*, Places>& to) const {
    APInt offset(32, 0);
    MapVector<Value*, APInt> scales;
    bool isKnown = true;
    while (auto* step = dyn_cast<GEPOperator>(leaf)) {
        isKnown &= step->collectOffset(layout_, 32, scales, offset);
        leaf = step->getPointerOperand();
    }
    if (!isOwn(leaf))
        return;
    Places& places = to[leaf];
    places.offsets.push_back(offset.getSExtValue());
    places.step = std::gcd(places.step, places.offsets.back() - places.offsets.front());
    for (const auto& [index, scale] : scales) {
        places.step = std::gcd(places.step, scale.getSExtValue());
        places.largest = std::max(places.largest, std::abs(scale.getSExtValue()));
    }
    if (!isKnown)
        places.step = 1;
}

// Follows choices to the pointers that they are made of. Steps from a choice stay in the array that
// the choice is of.
void Mixing::note(ArrayRef<Value*> pointers) {
    SmallSetVector<Value*, 8> open(pointers.begin(), pointers.end());
    MapVector<Value*, Places> places;
    for (std::size_t i = 0; i < open.size(); ++i) {
        Value* each = open[i];
        Value* base = each;
        while (auto* step = dyn_cast<GEPOperator>(base))
            base = step->getPointerOperand();
        if (auto* phi = dyn_cast<PHINode>(base))
            open.insert(phi->value_op_begin(), phi->value_op_end());
        else if (auto* select = dyn_cast<SelectInst>(base))
            open.insert(select->op_begin() + 1, select->op_end());
        else
            add(each, places);
    }
    for (const auto& [variable, all] : places) {
        Type* type = isa<AllocaInst>(variable) ? cast<AllocaInst>(variable)->getAllocatedType()
                                               : cast<GlobalVariable>(variable)->getValueType();
        if (!areOfOneArray(type, all.offsets, all.step, all.largest, layout_))
            found_.insert(variable);
    }
}

// An array of words, or of smaller numbers that the size is a multiple of.
ArrayType* flatType(Type* type, const DataLayout& layout) {
    const std::uint64_t bytes = layout.getTypeAllocSize(type);
    const std::uint64_t unit = std::gcd(bytes, std::uint64_t{4});
    Type* number = Type::getIntNTy(type->getContext(), static_cast<unsigned>(unit * 8));
    return ArrayType::get(number, bytes / unit);
}

// The bytes of a constant as numbers; zero where it has none.
Constant* flatValue(Constant& given, ArrayType* type, const DataLayout& layout) {
    Type* number = type->getElementType();
    const std::uint64_t unit = layout.getTypeAllocSize(number);
    SmallVector<Constant*, 64> numbers;
    for (std::uint64_t n = 0; n < type->getNumElements(); ++n) {
        Constant* one = ConstantFoldLoadFromConst(&given, number, APInt(32, n * unit), layout);
        if (!one)
            throw TranslationError("A pointer to one of several members of a constant with "
                                   "pointers is not supported.");
        numbers.push_back(isa<UndefValue>(one) ? Constant::getNullValue(number) : one);
    }
    return ConstantArray::get(type, numbers);
}

void flatten(Value& variable, const DataLayout& layout) {
    if (auto* local = dyn_cast<AllocaInst>(&variable)) {
        local->setAllocatedType(flatType(local->getAllocatedType(), layout));
        return;
    }
    auto& global = cast<GlobalVariable>(variable);
    ArrayType* type = flatType(global.getValueType(), layout);
    Constant* given = global.getInitializer();
    Constant* initial = isa<UndefValue>(given) ? static_cast<Constant*>(UndefValue::get(type))
                                               : flatValue(*given, type, layout);
    auto* flat =
        new GlobalVariable(*global.getParent(), type, global.isConstant(), global.getLinkage(),
                           initial, "", &global, GlobalValue::NotThreadLocal, 0u);
    flat->copyAttributesFrom(&global);
    flat->takeName(&global);
    global.replaceAllUsesWith(flat);
    global.eraseFromParent();
}

} // namespace

void flattenMixedVariables(Function& main) {
    const DataLayout& layout = main.getParent()->getDataLayout();
    const Mixing mixing(main);
    for (Value* variable : mixing.variables())
        flatten(*variable, layout);
}

} // namespace tarnwick::msl
