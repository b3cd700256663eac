// Building vectors and aggregates and taking them apart.

#include "TarnwickMSL/Translation/Spirv/Arithmetic.h"

#include <llvm/Analysis/VectorUtils.h>
#include <llvm/IR/PatternMatch.h>

namespace tarnwick::msl::spirv {

using namespace llvm;
using namespace llvm::PatternMatch;

static constexpr std::uint32_t undefinedLane = 0xffffffff;

// The scalar that a shuffle or multiplication takes from an insertion into lane 0 and repeats.
static bool isSplatSource(const InsertElementInst& insert) {
    return match(insert.getOperand(2), m_Zero()) && all_of(insert.users(), [](const User* user) {
               auto* shuffle = dyn_cast<ShuffleVectorInst>(user);
               return shuffle && shuffle->isZeroEltSplat();
           });
}

// A splat that only multiplications by a vector take, as OpVectorTimesScalar does.
static bool isFactor(const ShuffleVectorInst& shuffle) {
    return shuffle.getType()->isFPOrFPVectorTy() && shuffle.isZeroEltSplat() &&
           isa<InsertElementInst>(shuffle.getOperand(0)) &&
           all_of(shuffle.users(), [&](const User* user) {
               auto* product = dyn_cast<BinaryOperator>(user);
               if (!product || product->getOpcode() != Instruction::FMul)
                   return false;
               bool isFirst = product->getOperand(0) == &shuffle;
               const Value* other = product->getOperand(isFirst ? 1 : 0);
               return !(isa<ShuffleVectorInst>(other) && getSplatValue(other));
           });
}

// Bits of a value seen as a vector that SPIR-V has no type for: the optimiser writes a lane's
// truncation so. Each lane is worked out where it is taken.
static bool isBitView(const Value& value) {
    auto* cast = dyn_cast<BitCastInst>(&value);
    auto* vector = cast ? dyn_cast<FixedVectorType>(cast->getType()) : nullptr;
    return vector && !isBoolean(cast->getSrcTy()) &&
           (vector->getNumElements() > 4 || isBoolean(vector));
}

static Id extractBits(Body& body, const ExtractElementInst& extract) {
    auto& view = cast<BitCastInst>(*extract.getVectorOperand());
    Type* from = view.getSrcTy();
    Type* integer = Type::getIntNTy(body.types.context(), from->getScalarSizeInBits());
    std::uint64_t first = cast<ConstantInt>(extract.getIndexOperand())->getZExtValue() *
                          extract.getType()->getScalarSizeInBits();
    Id value = body.id(view.getOperand(0));
    if (from->isVectorTy())
        value =
            body.emit(spv::Op::OpCompositeExtract, from->getScalarType(),
                      {value, static_cast<std::uint32_t>(first / integer->getIntegerBitWidth())});
    value = body.bitcast(integer, from->getScalarType(), value);
    if (std::uint64_t shift = first % integer->getIntegerBitWidth())
        value = body.emit(spv::Op::OpShiftRightLogical, integer,
                          {value, body.constants.integer(integer, shift)});
    if (!isBoolean(extract.getType())) {
        Type* narrow =
            Type::getIntNTy(body.types.context(), extract.getType()->getScalarSizeInBits());
        return body.bitcast(extract.getType(), narrow, body.resized(narrow, integer, value, false));
    }
    Id bit = body.emit(spv::Op::OpBitwiseAnd, integer, {value, body.constants.integer(integer, 1)});
    return body.emit(spv::Op::OpINotEqual, body.i1(), {bit, body.constants.null(integer)});
}

bool isDeferred(const Instruction& instruction) {
    if (isBitView(instruction))
        return true;
    if (auto* shuffle = dyn_cast<ShuffleVectorInst>(&instruction))
        return isFactor(*shuffle);
    auto* insert = dyn_cast<InsertElementInst>(&instruction);
    if (!insert || !isa<ConstantInt>(insert->getOperand(2)))
        return false;
    if (isSplatSource(*insert))
        return true;
    if (!insert->hasOneUse())
        return false;
    auto* next = dyn_cast<InsertElementInst>(insert->user_back());
    return next && next->getOperand(0) == insert && isa<ConstantInt>(next->getOperand(2));
}

// The lanes of a chain of insertions, and the vector that it starts from.
static const Value* gatherLanes(const InsertElementInst& last,
                                MutableArrayRef<const Value*> lanes) {
    const Value* at = &last;
    while (auto* insert = dyn_cast<InsertElementInst>(at)) {
        auto* index = dyn_cast<ConstantInt>(insert->getOperand(2));
        if (!index || (insert != &last && !isDeferred(*insert)))
            break;
        std::uint64_t lane = index->getZExtValue();
        if (lane < lanes.size() && !lanes[lane])
            lanes[lane] = insert->getOperand(1);
        at = insert->getOperand(0);
    }
    return at;
}

Id writeInsertElement(Body& body, const InsertElementInst& insert) {
    auto* type = cast<FixedVectorType>(insert.getType());
    if (!isa<ConstantInt>(insert.getOperand(2))) {
        Id index = body.resized(body.i32(), insert.getOperand(2)->getType(),
                                body.id(insert.getOperand(2)), false);
        return body.emit(spv::Op::OpVectorInsertDynamic, type,
                         {body.id(insert.getOperand(0)), body.id(insert.getOperand(1)), index});
    }
    SmallVector<const Value*, 4> lanes(type->getNumElements(), nullptr);
    const Value* start = gatherLanes(insert, lanes);
    auto given = count_if(lanes, [](const Value* lane) { return lane != nullptr; });
    bool isOpen = isa<UndefValue>(start);
    if (!isOpen && given == 1) {
        auto lane =
            static_cast<std::uint32_t>(find_if(lanes, [](auto* l) { return l; }) - lanes.begin());
        return body.emit(spv::Op::OpCompositeInsert, type,
                         {body.id(lanes[lane]), body.id(start), lane});
    }
    SmallVector<std::uint32_t, 4> parts;
    for (std::uint32_t lane = 0; lane < lanes.size(); ++lane) {
        if (lanes[lane])
            parts.push_back(body.id(lanes[lane]));
        else if (isOpen)
            parts.push_back(body.constants.null(type->getElementType()));
        else
            parts.push_back(body.emit(spv::Op::OpCompositeExtract, type->getElementType(),
                                      {body.id(start), lane}));
    }
    return body.emit(spv::Op::OpCompositeConstruct, type, parts);
}

Id writeExtractElement(Body& body, const ExtractElementInst& extract) {
    if (isBitView(*extract.getVectorOperand()) && isa<ConstantInt>(extract.getIndexOperand()))
        return extractBits(body, extract);
    Id vector = body.id(extract.getVectorOperand());
    if (auto* lane = dyn_cast<ConstantInt>(extract.getIndexOperand()))
        return body.emit(spv::Op::OpCompositeExtract, extract.getType(),
                         {vector, static_cast<std::uint32_t>(lane->getZExtValue())});
    Id index = body.resized(body.i32(), extract.getIndexOperand()->getType(),
                            body.id(extract.getIndexOperand()), false);
    return body.emit(spv::Op::OpVectorExtractDynamic, extract.getType(), {vector, index});
}

Id writeShuffle(Body& body, const ShuffleVectorInst& shuffle) {
    if (const Value* scalar = getSplatValue(&shuffle))
        return body.splat(shuffle.getType(), body.id(scalar));
    Id first = body.id(shuffle.getOperand(0));
    bool hasSecond = !isa<UndefValue>(shuffle.getOperand(1));
    auto* given = cast<FixedVectorType>(shuffle.getOperand(0)->getType());
    if (shuffle.getType() == given && shuffle.isIdentity())
        return first;
    SmallVector<std::uint32_t, 6> operands{first,
                                           hasSecond ? body.id(shuffle.getOperand(1)) : first};
    for (int lane : shuffle.getShuffleMask()) {
        bool isOpen = lane < 0 || (!hasSecond && lane >= static_cast<int>(given->getNumElements()));
        operands.push_back(isOpen ? undefinedLane : static_cast<std::uint32_t>(lane));
    }
    return body.emit(spv::Op::OpVectorShuffle, shuffle.getType(), operands);
}

Id writeInsertValue(Body& body, const InsertValueInst& insert) {
    return body.emit(
        spv::Op::OpCompositeInsert, insert.getType(),
        {body.id(insert.getInsertedValueOperand()), body.id(insert.getAggregateOperand())},
        insert.getIndices());
}

Id writeExtractValue(Body& body, const ExtractValueInst& extract) {
    return body.emit(spv::Op::OpCompositeExtract, extract.getType(),
                     {body.id(extract.getAggregateOperand())}, extract.getIndices());
}

} // namespace tarnwick::msl::spirv
