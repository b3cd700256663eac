// The packaged CPU driver accesses local memory and tables at a changing index invocation by
// invocation. Comparing the index with each of a few numbers, for all invocations at once, takes
// half of the time, to compile and to draw (docs/measurements.md, "Short arrays").
#include "TarnwickMSL/Translation/Passes/Memory/ShortArrays.h"

#include "TarnwickMSL/Translation/Reading/Access.h"

#include <llvm/Analysis/ConstantFolding.h>
#include <llvm/Analysis/ValueTracking.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/Instructions.h>
#include <llvm/IR/IntrinsicInst.h>
#include <llvm/Transforms/Utils/Local.h>

#include <optional>

namespace tarnwick::msl {

using namespace llvm;

namespace {

constexpr std::uint64_t mostElements = 8; // of all indices of an access together

// One index of an access.
struct Dimension {
    reading::Step step;
    std::int64_t stride = 0; // bytes

    bool operator==(const Dimension& other) const {
        return stride == other.stride && step.constant == other.step.constant &&
               step.bound == other.step.bound &&
               equal(step.terms, other.step.terms, [](const auto& a, const auto& b) {
                   return a.index == b.index && a.scale == b.scale;
               });
    }
};

using Dimensions = SmallVector<Dimension, 2>;

// A load or store at changing indices.
struct ChangingAccess {
    Instruction* instruction;
    Value* root;
    std::int64_t first; // offset in bytes where all indices are zero
    Dimensions dimensions;
};

// The elements of an access, each at a known offset.
class Choice {
  public:
    explicit Choice(const ChangingAccess& access);
    void replace();

  private:
    Value* index(const Dimension& dimension);
    Value* address(std::int64_t offset);
    Value* loaded(std::int64_t offset);
    Value* loaded(std::size_t dimension, std::int64_t offset);
    Value* chosen(std::size_t dimension, std::int64_t offset, std::uint64_t from, std::uint64_t to);
    void store(std::size_t dimension, std::int64_t offset, Value* condition);

    const ChangingAccess& access_;
    IRBuilder<> builder_;
    Type* type_;
    Value* stored_; // null for a load
    SmallVector<Value*, 2> indices_;
};

} // namespace

static Type* rootType(const Value* root) {
    if (auto* local = dyn_cast<AllocaInst>(root))
        return local->isStaticAlloca() && !local->isArrayAllocation() ? local->getAllocatedType()
                                                                      : nullptr;
    auto* table = dyn_cast<GlobalVariable>(root);
    return table && table->isConstant() && table->hasDefinitiveInitializer() ? table->getValueType()
                                                                             : nullptr;
}

// The steps with an index that changes, on a path from the type.
static Dimensions dimensionsOf(const reading::Access& access, Type* type,
                               const DataLayout& layout) {
    Dimensions found;
    for (const reading::Step& step : access.steps) {
        if (auto* record = dyn_cast<StructType>(type)) {
            type = record->getElementType(static_cast<unsigned>(step.constant));
            continue;
        }
        type = type->isArrayTy() ? type->getArrayElementType() : type->getScalarType();
        if (!step.terms.empty())
            found.push_back({step, static_cast<std::int64_t>(layout.getTypeAllocSize(type))});
    }
    return found;
}

// Absent if parts of the value have different indices.
static std::optional<Dimensions> commonDimensions(const reading::Access& access, Type* type,
                                                  const DataLayout& layout) {
    if (access.form == reading::Access::Form::outside)
        return std::nullopt;
    if (access.parts.empty())
        return dimensionsOf(access, type, layout);
    std::optional<Dimensions> common;
    for (const reading::Access& part : access.parts) {
        const auto dimensions = commonDimensions(part, type, layout);
        if (!dimensions || (common && *common != *dimensions))
            return std::nullopt;
        common = dimensions;
    }
    return common;
}

static bool areFew(const Dimensions& dimensions) {
    std::uint64_t elements = 1;
    for (const Dimension& dimension : dimensions) {
        if (dimension.step.bound == 0 || dimension.step.bound > mostElements)
            return false;
        elements *= dimension.step.bound;
    }
    return elements <= mostElements;
}

// The indices that change in an access to memory of the type.
static std::optional<Dimensions> certainDimensions(const reading::Place& place, Type* type,
                                                   Type* accessed, const DataLayout& layout) {
    const auto access = reading::access({.element = type}, place, accessed, layout);
    return access && isCertain(*access) ? commonDimensions(*access, type, layout) : std::nullopt;
}

// Absent if the access cannot become a choice, or its place is known.
static std::optional<ChangingAccess> changingAccess(Instruction& instruction) {
    const DataLayout& layout = instruction.getDataLayout();
    const reading::Place place = reading::placeOf(getLoadStorePointerOperand(&instruction), layout);
    Type* const type = rootType(place.root);
    Type* const accessed = getLoadStoreType(&instruction);
    auto dimensions = certainDimensions(place, type, accessed, layout);
    const std::uint64_t bytes = layout.getTypeAllocSize(type),
                        stride = layout.getTypeAllocSize(accessed);
    if (!dimensions && stride != 0 && bytes % stride == 0) // as one array of its values
        dimensions =
            certainDimensions(place, ArrayType::get(accessed, bytes / stride), accessed, layout);
    if (!dimensions || dimensions->empty() || !areFew(*dimensions))
        return std::nullopt;
    std::int64_t first = place.offset;
    for (const Dimension& dimension : *dimensions)
        first -= dimension.step.constant * dimension.stride;
    return ChangingAccess{&instruction, const_cast<Value*>(place.root), first,
                          std::move(*dimensions)};
}

static bool isSimple(const Instruction& access) {
    auto* load = dyn_cast<LoadInst>(&access);
    return load ? load->isSimple() : cast<StoreInst>(access).isSimple();
}

// All loads and stores of a variable; absent if it has other uses.
static std::optional<SmallVector<Instruction*, 16>> accessesOf(AllocaInst& variable) {
    SmallVector<Instruction*, 16> found;
    SmallVector<Instruction*, 8> open{&variable};
    while (!open.empty()) {
        Instruction* pointer = open.pop_back_val();
        for (User* user : pointer->users()) {
            auto* instruction = cast<Instruction>(user);
            if (isa<GetElementPtrInst>(instruction))
                open.push_back(instruction);
            else if (getLoadStorePointerOperand(instruction) == pointer && isSimple(*instruction))
                found.push_back(instruction);
            else if (!instruction->isLifetimeStartOrEnd())
                return std::nullopt;
            if (auto* store = dyn_cast<StoreInst>(instruction);
                store && store->getValueOperand() == pointer)
                return std::nullopt;
        }
    }
    return found;
}

static bool isAtKnownPlace(Instruction& access) {
    return reading::placeOf(getLoadStorePointerOperand(&access), access.getDataLayout())
        .terms.empty();
}

// The accesses to replace, so that none at a changing index remains; none if that is impossible.
static SmallVector<Instruction*, 16> replaceable(AllocaInst& variable) {
    auto accesses = rootType(&variable) ? accessesOf(variable) : std::nullopt;
    if (!accesses)
        return {};
    erase_if(*accesses, [](Instruction* access) { return isAtKnownPlace(*access); });
    if (!all_of(*accesses, [](Instruction* access) { return changingAccess(*access); }))
        return {};
    return *accesses;
}

// Whether it loads from a table at a changing index.
static bool isOfTable(Instruction& instruction) {
    auto* load = dyn_cast<LoadInst>(&instruction);
    auto* step = load ? dyn_cast<GetElementPtrInst>(load->getPointerOperand()) : nullptr;
    auto* table = step ? dyn_cast<GlobalVariable>(getUnderlyingObject(step)) : nullptr;
    return table && rootType(table) && load->isSimple() && !isAtKnownPlace(*load) &&
           changingAccess(*load);
}

Choice::Choice(const ChangingAccess& access)
    : access_(access), builder_(access.instruction), type_(getLoadStoreType(access.instruction)),
      stored_(isa<StoreInst>(access.instruction) ? access.instruction->getOperand(0) : nullptr) {
    for (const Dimension& dimension : access.dimensions)
        indices_.push_back(index(dimension));
}

Value* Choice::index(const Dimension& dimension) {
    Value* sum = nullptr;
    for (const reading::Term& term : dimension.step.terms) {
        Value* product =
            builder_.CreateSExtOrTrunc(const_cast<Value*>(term.index), builder_.getInt32Ty());
        if (term.scale != 1)
            product = builder_.CreateMul(product,
                                         ConstantInt::getSigned(builder_.getInt32Ty(), term.scale));
        sum = sum ? builder_.CreateAdd(sum, product) : product;
    }
    if (dimension.step.constant != 0)
        sum = builder_.CreateAdd(
            sum, ConstantInt::getSigned(builder_.getInt32Ty(), dimension.step.constant));
    return sum;
}

Value* Choice::address(std::int64_t offset) {
    return builder_.CreateConstInBoundsGEP1_32(builder_.getInt8Ty(), access_.root,
                                               static_cast<unsigned>(offset));
}

Value* Choice::loaded(std::int64_t offset) {
    auto* table = dyn_cast<GlobalVariable>(access_.root);
    if (!table)
        return builder_.CreateAlignedLoad(type_, address(offset), Align(1));
    const DataLayout& layout = access_.instruction->getDataLayout();
    return ConstantFoldLoadFromConst(table->getInitializer(), type_,
                                     APInt(32, static_cast<std::uint64_t>(offset)), layout);
}

Value* Choice::loaded(std::size_t dimension, std::int64_t offset) {
    return dimension == indices_.size()
               ? loaded(offset)
               : chosen(dimension, offset, 0, access_.dimensions[dimension].step.bound);
}

// One of the elements [from, to) of a dimension, found by halves. An index outside of the array
// chooses its last element, as the clamped index does.
Value* Choice::chosen(std::size_t dimension, std::int64_t offset, std::uint64_t from,
                      std::uint64_t to) {
    if (to - from == 1)
        return loaded(dimension + 1, offset + static_cast<std::int64_t>(from) *
                                                  access_.dimensions[dimension].stride);
    const std::uint64_t middle = (from + to + 1) / 2;
    Value* isBelow = builder_.CreateICmpULT(indices_[dimension],
                                            builder_.getInt32(static_cast<unsigned>(middle)));
    Value* below = chosen(dimension, offset, from, middle);
    return builder_.CreateSelect(isBelow, below, chosen(dimension, offset, middle, to));
}

void Choice::store(std::size_t dimension, std::int64_t offset, Value* condition) {
    if (dimension == indices_.size()) {
        Value* after = builder_.CreateSelect(condition, stored_, loaded(offset));
        builder_.CreateAlignedStore(after, address(offset), Align(1));
        return;
    }
    const auto& [step, stride] = access_.dimensions[dimension];
    for (std::uint64_t element = 0; element < step.bound; element++) {
        Value* number = builder_.getInt32(static_cast<unsigned>(element));
        Value* isIt = element + 1 < step.bound
                          ? builder_.CreateICmpEQ(indices_[dimension], number)
                          : builder_.CreateICmpUGE(indices_[dimension], number);
        if (condition)
            isIt = builder_.CreateAnd(condition, isIt);
        store(dimension + 1, offset + static_cast<std::int64_t>(element) * stride, isIt);
    }
}

void Choice::replace() {
    if (stored_)
        store(0, access_.first, nullptr);
    else
        access_.instruction->replaceAllUsesWith(loaded(0, access_.first));
    Value* pointer = getLoadStorePointerOperand(access_.instruction);
    access_.instruction->eraseFromParent();
    RecursivelyDeleteTriviallyDeadInstructions(pointer);
}

bool chooseFromShortArrays(Function& main) {
    SmallVector<Instruction*, 16> accesses;
    for (Instruction& instruction : instructions(main)) {
        if (auto* variable = dyn_cast<AllocaInst>(&instruction))
            append_range(accesses, replaceable(*variable));
        else if (isOfTable(instruction))
            accesses.push_back(&instruction);
    }
    // Looked at again, because an index may be the value of an access that is replaced.
    for (Instruction* access : accesses)
        if (const auto changing = changingAccess(*access))
            Choice(*changing).replace();
    return !accesses.empty();
}

} // namespace tarnwick::msl
