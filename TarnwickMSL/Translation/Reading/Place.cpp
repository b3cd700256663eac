#include "TarnwickMSL/Translation/Reading/Place.h"

#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/Analysis/ValueTracking.h>
#include <llvm/IR/GetElementPtrTypeIterator.h>
#include <llvm/IR/GlobalVariable.h>
#include <llvm/IR/Instructions.h>
#include <llvm/IR/Operator.h>
#include <llvm/IR/PatternMatch.h>

#include <algorithm>

namespace tarnwick::msl::reading {

using namespace llvm;
using namespace llvm::PatternMatch;

// Takes an index apart into terms and a constant: addresses in bytes arrive as sums of products.
static void addIndex(Place& place, const Value* index, std::int64_t scale, unsigned depth) {
    const Value* inner = nullptr;
    const Value* other = nullptr;
    const APInt* constant = nullptr;
    if (auto* number = dyn_cast<ConstantInt>(index)) {
        place.offset += number->getSExtValue() * scale;
        return;
    }
    if (depth < 6) {
        if (match(index, m_Shl(m_Value(inner), m_APInt(constant))) && constant->ult(31))
            return addIndex(place, inner, scale << constant->getZExtValue(), depth + 1);
        if (match(index, m_Mul(m_Value(inner), m_APInt(constant))))
            return addIndex(place, inner, scale * constant->getSExtValue(), depth + 1);
        if (match(index, m_AddLike(m_Value(inner), m_Value(other)))) {
            if (isa<ConstantInt>(other)) // first, because it is before the term
                std::swap(inner, other);
            addIndex(place, inner, scale, depth + 1);
            return addIndex(place, other, scale, depth + 1);
        }
    }
    place.terms.push_back({index, scale, place.offset});
}

static void addIndices(Place& place, const GEPOperator& step, const DataLayout& layout) {
    for (auto type = gep_type_begin(step); type != gep_type_end(step); ++type) {
        const Value* index = type.getOperand();
        if (StructType* record = type.getStructTypeOrNull()) {
            auto member = static_cast<unsigned>(cast<ConstantInt>(index)->getZExtValue());
            place.offset += static_cast<std::int64_t>(
                layout.getStructLayout(record)->getElementOffset(member).getFixedValue());
        } else {
            std::uint64_t stride = type.getSequentialElementStride(layout).getFixedValue();
            auto scale = static_cast<std::int64_t>(stride);
            // Only addresses are sums of products; the index of an array is one term. LLVM writes
            // the addresses in local memory in steps of any size.
            const bool isAddress =
                type == gep_type_begin(step) && (scale == 1 || isa<AllocaInst>(place.root));
            addIndex(place, index, scale, isAddress ? 0 : 6);
        }
    }
}

const Value* addressOf(const Value* root) {
    bool isConverted = Operator::getOpcode(root) == Instruction::IntToPtr;
    return isConverted ? cast<User>(root)->getOperand(0) : nullptr;
}

namespace {

// Follows the steps to a place by their types. The optimiser writes constants as bytes, and joins
// them with constants of other steps in bytes and of pointers that move: an index of one member,
// less a constant, then looks like an index of another. So a pointer may move at its root only.
class TypedWalk {
  public:
    explicit TypedWalk(const Value* root) {
        if (auto* local = dyn_cast<AllocaInst>(root))
            type_ = local->getAllocatedType();
        else if (auto* global = dyn_cast<GlobalVariable>(root))
            type_ = global->getValueType();
    }
    void take(const GEPOperator& step, const DataLayout& layout);
    // Whether all steps so far were into what the step before reached.
    bool isTyped() const { return type_ != nullptr; }

  private:
    Type* type_ = nullptr; // at the place; null if it is not known
    bool isFirst_ = true;

    void takeBytes(std::int64_t bytes, const DataLayout& layout);
    bool begins(Type* with) const;
    bool isOf(Type* element) const;
};

void TypedWalk::take(const GEPOperator& step, const DataLayout& layout) {
    APInt bytes(layout.getIndexTypeSizeInBits(step.getType()), 0);
    const auto* first = dyn_cast<ConstantInt>(step.idx_begin()->get());
    const bool isOfBytes = step.getSourceElementType()->isIntegerTy(8);
    if (isOfBytes && step.accumulateConstantOffset(layout, bytes))
        return takeBytes(bytes.getSExtValue(), layout);
    const bool isMove = !first || !first->isZero();
    Type* with = step.getSourceElementType();
    const bool isInto = !isOfBytes && (isMove ? isFirst_ && isOf(with) : begins(with));
    isFirst_ = false;
    type_ = isInto ? step.getResultElementType() : nullptr;
}

// Goes to the value that begins the bytes behind the place.
void TypedWalk::takeBytes(std::int64_t bytes, const DataLayout& layout) {
    isFirst_ = false;
    if (type_ && (bytes < 0 || bytes >= static_cast<std::int64_t>(layout.getTypeAllocSize(type_))))
        type_ = nullptr;
    while (type_ && bytes != 0) {
        if (auto* record = dyn_cast<StructType>(type_)) {
            const StructLayout& members = *layout.getStructLayout(record);
            const unsigned member =
                members.getElementContainingOffset(static_cast<std::uint64_t>(bytes));
            bytes -= static_cast<std::int64_t>(members.getElementOffset(member).getFixedValue());
            type_ = record->getElementType(member);
        } else {
            type_ = type_->isArrayTy()    ? type_->getArrayElementType()
                    : type_->isVectorTy() ? type_->getScalarType()
                                          : nullptr;
            if (type_)
                bytes %= static_cast<std::int64_t>(layout.getTypeAllocSize(type_));
        }
    }
}

// Whether the value at the place is one of the type, or begins with one.
bool TypedWalk::begins(Type* with) const {
    Type* type = type_;
    while (type && type != with) {
        if (type->isStructTy() && type->getStructNumElements() && with->isAggregateType())
            type = type->getStructElementType(0);
        else
            type = type->isArrayTy() ? type->getArrayElementType() : nullptr;
    }
    return type;
}

// Whether a move by elements of the type stays in the place's own array. Elements of an array in it
// would lead from one such array into the next.
bool TypedWalk::isOf(Type* element) const {
    Type* type = type_;
    while (type && type != element && type->isStructTy() && type->getStructNumElements() &&
           element->isAggregateType())
        type = type->getStructElementType(0);
    return type &&
           (type == element || (type->isArrayTy() && type->getArrayElementType() == element));
}

} // namespace

Place placeOf(const Value* pointer, const DataLayout& layout) {
    SmallVector<const GEPOperator*, 4> chain;
    while (auto* step = dyn_cast<GEPOperator>(pointer)) {
        chain.push_back(step);
        pointer = step->getPointerOperand();
    }
    if (!isa<AllocaInst, GlobalVariable>(pointer) && !addressOf(pointer))
        throw CompilerFault("A pointer cannot be followed to what it points into.");
    Place place{.root = pointer, .offset = 0, .terms = {}};
    TypedWalk walk(pointer);
    for (const GEPOperator* step : reverse(chain)) {
        addIndices(place, *step, layout);
        walk.take(*step, layout);
        auto* instruction = dyn_cast<Instruction>(step);
        place.isOfWords |= instruction && instruction->getMetadata(wordStep);
    }
    place.isTyped = walk.isTyped();
    place.isRising =
        isa<AllocaInst>(pointer) && all_of(place.terms, [&](const Term& term) {
            return term.scale > 0 && computeKnownBits(term.index, layout).isNonNegative();
        });
    if (place.isRising)
        for (Term& term : place.terms) // LLVM may have moved the member's offset behind the term
            term.before = std::max(term.before, place.offset);
    return place;
}

} // namespace tarnwick::msl::reading
