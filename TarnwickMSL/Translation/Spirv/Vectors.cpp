#include "TarnwickMSL/Translation/Spirv/Vectors.h"

#include "TarnwickMSL/Translation/Reading/Deferred.h"

namespace tarnwick::msl::spirv {

using namespace llvm;

static constexpr std::uint32_t undefinedLane = 0xffffffff;

// The lanes of a chain of insertions, and the vector that it starts from.
static const Value* gatherLanes(const InsertElementInst& last,
                                MutableArrayRef<const Value*> lanes) {
    const Value* at = &last;
    while (auto* insert = dyn_cast<InsertElementInst>(at)) {
        if (!isAtKnownLane(*insert) || (insert != &last && !isDeferred(*insert)))
            break;
        std::uint64_t lane = cast<ConstantInt>(insert->getOperand(2))->getZExtValue();
        if (lane < lanes.size() && !lanes[lane])
            lanes[lane] = insert->getOperand(1);
        at = insert->getOperand(0);
    }
    return at;
}

Id writeInsertElement(Body& body, const InsertElementInst& insert) {
    auto* type = cast<FixedVectorType>(insert.getType());
    if (!isAtKnownLane(insert)) {
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
    Id vector = body.id(extract.getVectorOperand());
    if (auto* lane = dyn_cast<ConstantInt>(extract.getIndexOperand()))
        return body.emit(spv::Op::OpCompositeExtract, extract.getType(),
                         {vector, static_cast<std::uint32_t>(lane->getZExtValue())});
    Id index = body.resized(body.i32(), extract.getIndexOperand()->getType(),
                            body.id(extract.getIndexOperand()), false);
    return body.emit(spv::Op::OpVectorExtractDynamic, extract.getType(), {vector, index});
}

Id writeShuffle(Body& body, const ShuffleVectorInst& shuffle) {
    if (const Value* scalar = repeatedScalar(&shuffle))
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
