#include "TarnwickMSL/Translation/Wgsl/Vectors.h"

#include "TarnwickMSL/Translation/Reading/Deferred.h"
#include "TarnwickMSL/Translation/Wgsl/Naming.h"

#include <array>

namespace tarnwick::msl::wgsl {

using namespace llvm;

static constexpr std::array<std::string_view, 4> laneNames{"x", "y", "z", "w"};

Expression laneOf(const Expression& vector, unsigned lane) {
    return member(vector, laneNames[lane]);
}

// The lanes of a chain of insertions, and the vector that it starts from.
static const Value* gatherLanes(const InsertElementInst& last,
                                MutableArrayRef<const Value*> lanes) {
    const Value* at = &last;
    while (auto* insert = dyn_cast<InsertElementInst>(at)) {
        if (!isAtKnownLane(*insert) || (insert != &last && !isDeferred(*insert)))
            break;
        const std::uint64_t lane = cast<ConstantInt>(insert->getOperand(2))->getZExtValue();
        if (lane < lanes.size() && !lanes[lane])
            lanes[lane] = insert->getOperand(1);
        at = insert->getOperand(0);
    }
    return at;
}

// A vector of its lanes. Lanes of one name are one part: `vec4f(a.xy, b.zw)`.
static Expression vectorOf(Body& body, Type* type, const std::vector<Expression>& lanes) {
    const auto start = [&](const Expression& lane) { // of a lane of a name, up to the point
        const std::size_t point = lane.text.rfind('.');
        const bool isLane = point != std::string::npos && point + 2 == lane.text.size() &&
                            std::string_view("xyzw").find(lane.text.back()) != std::string::npos &&
                            isName(lane.text) && std::isalpha(lane.text.front());
        const std::string name = isLane ? lane.text.substr(0, point + 1) : "";
        const bool isRecord = name == body.inputName() + "." || name == body.outputName() + ".";
        return isRecord ? "" : name;
    };
    std::vector<Expression> parts;
    for (const Expression& lane : lanes) {
        const std::string name = start(lane);
        const bool isNext = !name.empty() && !parts.empty() &&
                            parts.back().text.starts_with(name) &&
                            parts.back().text.find('.', name.size()) == std::string::npos &&
                            lane.readsMemory == parts.back().readsMemory &&
                            start({.text = name + parts.back().text.back()}) == name;
        if (isNext)
            parts.back().text += lane.text.back();
        else
            parts.push_back(lane);
    }
    if (parts.size() == 1 && lanes.size() > 1)
        return parts.front();
    return call(body.type(type), parts);
}

static std::string index(Body& body, const Value* value, unsigned count) {
    Expression at = body.unsignedValue(value);
    if (value->getType()->isIntegerTy(1))
        at = call("u32", {at});
    return call("min", {at, body.number(count - 1)}).text;
}

Expression writeInsertElement(Body& body, const InsertElementInst& insert) {
    auto* type = cast<FixedVectorType>(insert.getType());
    const unsigned count = type->getNumElements();
    if (!isAtKnownLane(insert)) {
        const Expression before = body.unsignedValue(insert.getOperand(0));
        const Expression lane = body.unsignedValue(insert.getOperand(1));
        const std::string at = index(body, insert.getOperand(2), count);
        const std::string name = body.names.make("changed");
        body.line("var " + name + " = " + before.text + ";");
        body.line(name + "[" + at + "] = " + lane.text + ";");
        return {.text = name};
    }
    SmallVector<const Value*, 4> lanes(count, nullptr);
    const Value* start = gatherLanes(insert, lanes);
    Expression whole;
    auto* rest = dyn_cast<Constant>(start);
    if (!rest && is_contained(lanes, nullptr))
        whole = body.named(body.unsignedValue(start), nameOf(*start));
    std::vector<Expression> parts;
    for (unsigned lane = 0; lane < count; ++lane) {
        if (lanes[lane])
            parts.push_back(body.unsignedValue(lanes[lane]));
        else if (rest)
            parts.push_back(body.constant(rest->getAggregateElement(lane)));
        else
            parts.push_back(laneOf(whole, lane));
    }
    return vectorOf(body, type, parts);
}

Expression writeExtractElement(Body& body, const ExtractElementInst& extract) {
    const Expression vector = body.value(extract.getVectorOperand());
    const unsigned count = laneCount(extract.getVectorOperandType());
    if (auto* lane = dyn_cast<ConstantInt>(extract.getIndexOperand()))
        return lane->getZExtValue() < count
                   ? laneOf(vector, static_cast<unsigned>(lane->getZExtValue()))
                   : body.zero(extract.getType());
    Expression made = vector;
    made.text =
        within(vector, Rank::primary) + "[" + index(body, extract.getIndexOperand(), count) + "]";
    made.rank = Rank::primary;
    return made;
}

// The lanes of one vector as a swizzle; else a vector of all lanes.
Expression writeShuffle(Body& body, const ShuffleVectorInst& shuffle) {
    auto* type = cast<FixedVectorType>(shuffle.getType());
    if (const Value* scalar = repeatedScalar(&shuffle)) {
        const Expression number = body.unsignedValue(scalar);
        Expression made = call(body.type(type), {number});
        if (number.rank == Rank::primary)
            made.repeated = number.text;
        return made;
    }
    const Value *first = shuffle.getOperand(0), *second = shuffle.getOperand(1);
    const unsigned given = laneCount(first->getType());
    const auto isOf = [&](int lane, bool isSecond) {
        return lane >= 0 && (static_cast<unsigned>(lane) >= given) == isSecond;
    };
    ArrayRef<int> mask = shuffle.getShuffleMask();
    const bool usesFirst = any_of(mask, [&](int lane) { return isOf(lane, false); });
    const bool usesSecond =
        !isa<UndefValue>(second) && any_of(mask, [&](int lane) { return isOf(lane, true); });
    if (!usesFirst && !usesSecond)
        return body.zero(type);
    if (usesFirst != usesSecond) {
        const Expression vector = body.value(usesFirst ? first : second);
        std::string lanes;
        for (int lane : mask)
            lanes += isOf(lane, usesSecond)
                         ? laneNames[static_cast<unsigned>(lane) - (usesFirst ? 0 : given)]
                         : "x";
        return lanes == std::string_view("xyzw").substr(0, given) ? vector : member(vector, lanes);
    }
    const auto whole = [&](const Value* value) {
        return isa<Constant>(value) ? Expression()
                                    : body.named(body.unsignedValue(value), nameOf(*value));
    };
    const Expression a = whole(first), b = whole(second);
    const auto laneFrom = [&](const Value* from, const Expression& vector, unsigned lane) {
        auto* constant = dyn_cast<Constant>(from);
        return constant ? body.constant(constant->getAggregateElement(lane)) : laneOf(vector, lane);
    };
    std::vector<Expression> lanes;
    for (int lane : mask) {
        const auto number = static_cast<unsigned>(lane);
        lanes.push_back(lane < 0           ? body.zero(type->getElementType())
                        : isOf(lane, true) ? laneFrom(second, b, number - given)
                                           : laneFrom(first, a, number));
    }
    return vectorOf(body, type, lanes);
}

} // namespace tarnwick::msl::wgsl
