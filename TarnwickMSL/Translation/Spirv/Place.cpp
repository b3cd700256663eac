#include "TarnwickMSL/Translation/Spirv/Place.h"

#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/Analysis/ValueTracking.h>
#include <llvm/IR/GetElementPtrTypeIterator.h>
#include <llvm/IR/GlobalVariable.h>
#include <llvm/IR/Instructions.h>
#include <llvm/IR/Operator.h>
#include <llvm/IR/PatternMatch.h>

#include <algorithm>

namespace tarnwick::msl::spirv {

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
                scale == 1 || (isa<AllocaInst>(place.root) && type == gep_type_begin(step));
            addIndex(place, index, scale, isAddress ? 0 : 6);
        }
    }
}

const Value* addressOf(const Value* root) {
    bool isConverted = Operator::getOpcode(root) == Instruction::IntToPtr;
    return isConverted ? cast<User>(root)->getOperand(0) : nullptr;
}

Place placeOf(const Value* pointer, const DataLayout& layout) {
    SmallVector<const GEPOperator*, 4> chain;
    while (auto* step = dyn_cast<GEPOperator>(pointer)) {
        chain.push_back(step);
        pointer = step->getPointerOperand();
    }
    if (!isa<AllocaInst, GlobalVariable>(pointer) && !addressOf(pointer))
        throw CompilerFault("A pointer cannot be followed to what it points into.");
    Place place{.root = pointer, .offset = 0, .terms = {}};
    for (const GEPOperator* step : reverse(chain)) {
        addIndices(place, *step, layout);
        auto* instruction = dyn_cast<Instruction>(step);
        place.isOfWords |= instruction && instruction->getMetadata(wordStep);
    }
    place.isRising =
        isa<AllocaInst>(pointer) && all_of(place.terms, [&](const Term& term) {
            return term.scale > 0 && computeKnownBits(term.index, layout).isNonNegative();
        });
    if (place.isRising)
        for (Term& term : place.terms) // LLVM may have moved the member's offset behind the term
            term.before = std::max(term.before, place.offset);
    return place;
}

} // namespace tarnwick::msl::spirv
