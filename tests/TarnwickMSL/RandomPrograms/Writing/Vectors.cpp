#include "tests/TarnwickMSL/RandomPrograms/Writing/Generator.h"

#include <algorithm>
#include <array>

namespace tarnwick::trials {

namespace {

constexpr double exactSignedBound = 1 << 24;
constexpr double exactFloatUnits = 1 << 23; // bound / quantum

bool isExact(const Expression& value) {
    return value.bound / value.quantum < exactFloatUnits;
}

Expression product(const Expression& left, const Expression& right, double terms = 1) {
    return {"(" + left.text + " * " + right.text + ")", left.bound * right.bound * terms,
            left.quantum * right.quantum};
}

Expression sum(const Expression& left, const char* sign, const Expression& right) {
    return {"(" + left.text + sign + right.text + ")", left.bound + right.bound,
            std::min(left.quantum, right.quantum)};
}

// A number with the type of a vector's lanes.
std::string number(Kind kind, std::uint32_t value) {
    const std::string digits = std::to_string(value);
    return kind == Kind::signed_ ? digits : typeName(kind) + "(" + digits + "u)";
}

bool isStorable(const std::string& swizzle) {
    return std::all_of(swizzle.begin(), swizzle.end(), [&](char lane) {
        return std::count(swizzle.begin(), swizzle.end(), lane) == 1;
    });
}

} // namespace

std::string Generator::swizzle(std::uint32_t lanes, std::uint32_t width, bool isStore) {
    std::vector<std::string> fitting;
    for (const std::string& each : swizzlesOf(lanes))
        if (each.size() == width && (!isStore || isStorable(each)))
            fitting.push_back(each);
    return "." + any(fitting);
}

std::string Generator::lane(const std::string& vector, std::uint32_t lanes) {
    static constexpr std::array<const char*, 4> names{".x", ".y", ".z", ".w"};
    return chance(15) ? vector + "[" + index(lanes) + "]" : vector + names[below(lanes)];
}

// A vector of its lanes, or a matrix of its columns; leaves alone.
Expression Generator::composite(Type type) {
    if (!type.isMatrix() && chance(40))
        return {typeName(type) + "(" + leaf(type.kind).text + ")", tameBound(type), 0.25};
    std::string text = typeName(type) + "(";
    const Type part{type.kind, type.isMatrix() ? type.lanes : 1};
    const std::uint32_t parts = type.isMatrix() ? type.columns : type.lanes;
    for (std::uint32_t i = 0; i < parts; i++) {
        const std::string value =
            type.isMatrix() || chance(60) ? leaf(part).text : literal(type.kind).text;
        text += (i > 0 ? ", " : "") + (type.isMatrix() ? littleText(part, value) : value);
    }
    return {text + ")", tameBound(type), 0.25};
}

Expression Generator::vectorExpression(Type type, int depth) {
    const std::uint32_t choice = below(20);
    if (choice < 5)
        return arranged(type, depth);
    if (choice < 7)
        return converted(type, depth);
    if (choice < 9) { // element by element, as a condition says
        const Expression a = expression(type, depth - 1), b = expression(type, depth - 1);
        const std::string left = leaf(type).text;
        return {"select(" + a.text + ", " + b.text + ", " + left + (chance(50) ? " < " : " != ") +
                    leaf(type).text + ")",
                std::max(a.bound, b.bound), std::min(a.quantum, b.quantum)};
    }
    if (!isReal(type.kind))
        return chance(15) ? integerFunction(type, depth) : integerLanes(type, depth);
    if (choice < (type.kind == Kind::half_ ? 11 : 14))
        return transformed(type, depth);
    return type.kind == Kind::half_ ? halfExpression(type, depth) : floatLanes(type, depth);
}

// Lanes from elsewhere: a swizzle, a scalar in all of them, or parts side by side.
Expression Generator::arranged(Type type, int depth) {
    const std::uint32_t choice = below(3);
    if (choice == 0) {
        const Type from{type.kind, 2 + below(3)};
        Expression value = leaf(from);
        if (chance(40)) { // native code has no swizzles of swizzles
            value = expression(from, depth - 1);
            value.text = typeName(from) + "(" + value.text + ")";
        }
        value.text += swizzle(from.lanes, type.lanes, false);
        return value;
    }
    Expression value = expression(type.kind, depth - 1);
    if (choice == 1) {
        value.text = typeName(type) + "(" + value.text + ")";
        return value;
    }
    const Expression rest = expression({type.kind, type.lanes - 1}, depth - 1);
    const bool isFirst = chance(50);
    return {typeName(type) + "(" + (isFirst ? value : rest).text + ", " +
                (isFirst ? rest : value).text + ")",
            std::max(value.bound, rest.bound), std::min(value.quantum, rest.quantum)};
}

Expression Generator::converted(Type type, int depth) {
    const Type floats{Kind::float_, type.lanes}, ints{Kind::signed_, type.lanes},
        words{Kind::unsigned_, type.lanes}, halves{Kind::half_, type.lanes};
    const std::string to = typeName(type) + "(";
    if (wraps(type.kind)) {
        const Kind from = anyKind();
        const bool isOther = wraps(from) && from != type.kind;
        return {to + expression(isOther ? Type{from, type.lanes} : ints, depth - 1).text + ")"};
    }
    switch (type.kind) {
    case Kind::signed_:
        if (chance(50))
            return {to + expression(words, depth - 1).text + " & 1023u)", 1023};
        return {to + within(expression(floats, depth - 1), floats, 4096).text + ")", 4096};
    case Kind::half_:
        if (chance(50))
            return {to + littleText(floats, tamed(floats, depth - 1)) + ")", 4, 0.25};
        return {to + expression(words, depth - 1).text + " & 255u)", 255, 1};
    case Kind::float_:
        if (chance(20)) {
            const Expression value = expression(halves, depth - 1);
            return {to + value.text + ")", value.bound, value.quantum};
        }
        if (chance(50))
            return {to + expression(words, depth - 1).text + " & 255u)", 255, 1};
        return {to + within(expression(ints, depth - 1), ints, 4096).text + ")", 4096, 1};
    default:
        return {};
    }
}

// One operand may be a scalar, which counts for every lane.
Expression Generator::integerLanes(Type type, int depth) {
    const Type other = chance(70) ? type : Type(type.kind);
    const Expression a = expression(type, depth - 1), b = expression(other, depth - 1);
    switch (below(8)) {
    case 0:
    case 1:
        return within(sum(a, chance(50) ? " + " : " - ", b), type, exactSignedBound);
    case 2:
        return product(within(a, type, 2048), within(b, other, 2048));
    case 3:
        return {"(" + a.text + (chance(50) ? " & " : " ^ ") + b.text + ")",
                2 * std::max(a.bound, b.bound)};
    case 4:
        return {"(" + a.text + (chance(70) ? " % " : " / ") + number(type.kind, 2 + below(60)) +
                    ")",
                std::max(62.0, a.bound)};
    case 6:
        if (isSigned(type.kind))
            return {"(" + a.text + " | " + b.text + ")", 2 * std::max(a.bound, b.bound)};
        return {(chance(50) ? "(~" + a.text + ")"
                            : "(" + a.text + " << " + number(type.kind, below(8)) + ")")};
    case 5:
        return {"(" + a.text + " >> " + number(type.kind, 1 + below(7)) + ")", a.bound + 1};
    default:
        return extreme(type, a, depth);
    }
}

Expression Generator::extreme(Type type, const Expression& value, int depth) {
    const Expression other = expression(type, depth - 1);
    return {(chance(50) ? "min(" : "max(") + value.text + ", " + other.text + ")",
            std::max(value.bound, other.bound), std::min(value.quantum, other.quantum)};
}

Expression Generator::floatLanes(Type type, int depth) {
    const Type other = chance(50) ? type : Type(Kind::float_);
    const Expression a = expression(type, depth - 1), b = expression(other, depth - 1);
    static constexpr std::array<const char*, 5> whole{"floor", "ceil", "trunc", "rint", "round"};
    switch (below(9)) {
    case 0:
    case 1: {
        const Expression found = sum(a, chance(50) ? " + " : " - ", b);
        return isExact(found) ? found : within(a, type, 1024);
    }
    case 2:
    case 3:
    case 4: {
        const Expression left = within(a, type, 1024), right = within(b, other, 128);
        const Expression found = chance(50) ? product(left, right) : product(right, left);
        return isExact(found) ? found : left;
    }
    case 5:
        return {std::string(whole[below(5)]) + "(" + a.text + ")", a.bound + 1, 1};
    case 6:
        return {(chance(50) ? "abs(" : "(-") + a.text + ")", a.bound, a.quantum};
    case 7:
        return {"fract(" + a.text + ")", 1, a.quantum};
    default:
        return extreme(type, a, depth);
    }
}

// Small enough for sums of products of four, in the arithmetic of the kind.
Expression Generator::factor(Type type, int depth, double bound) {
    const Expression value = expression(type, depth);
    if (type.kind != Kind::half_ || type.isMatrix())
        return within(value, type, type.isMatrix() ? 4 : bound);
    return small(value, type);
}

// A matrix times a vector, or a vector times a matrix.
Expression Generator::transformed(Type type, int depth) {
    const std::uint32_t lanes = 2 + below(3);
    const bool isLeft = chance(60);
    const Type matrix =
        isLeft ? Type{type.kind, type.lanes, lanes} : Type{type.kind, lanes, type.lanes};
    const Expression m = factor(matrix, depth - 1, 4);
    const Expression v = factor({type.kind, lanes}, depth - 1, 1024);
    return isLeft ? product(m, v, lanes) : product(v, m, lanes);
}

Expression Generator::matrixExpression(Type type, int depth) {
    const Expression a = factor(type, depth - 1, 4);
    switch (below(5)) {
    case 0: {
        const std::uint32_t between = 2 + below(3);
        const Type left{type.kind, type.lanes, between}, right{type.kind, between, type.columns};
        const Expression first = factor(left, depth - 1, 4);
        return product(first, factor(right, depth - 1, 4), between);
    }
    case 1:
        return sum(a, chance(50) ? " + " : " - ", factor(type, depth - 1, 4));
    case 2:
        return product(a, factor(type.kind, depth - 1, 128));
    case 3: {
        Expression value = expression({type.kind, type.columns, type.lanes}, depth - 1);
        value.text = "transpose(" + value.text + ")";
        return value;
    }
    default:
        return composite(type);
    }
}

// A scalar of two vectors.
Expression Generator::dotted(Kind kind, int depth) {
    const Type vector{kind, 2 + below(3)};
    const Expression a = factor(vector, depth - 1, 1024), b = factor(vector, depth - 1, 64);
    const Expression found = product(a, b, vector.lanes);
    if (!isExact(found))
        return leaf(kind);
    return {"dot(" + exactly(vector, a.text) + ", " + exactly(vector, b.text) + ")", found.bound,
            found.quantum};
}

// A statement that stores to some of the lanes, or changes them in place.
void Generator::assignLanes(const Variable& vector) {
    const Type type = vector.type;
    const std::uint32_t choice = below(4);
    if (choice == 0)
        return line(lane(vector.name, type.lanes) + " = " + tamed(type.kind, 2) + ";");
    if (choice == 1) {
        const std::uint32_t width = 2 + below(type.lanes - 1);
        return line(vector.name + swizzle(type.lanes, width, true) + " = " +
                    tamed({type.kind, width}, 2) + ";");
    }
    const Type other = chance(50) ? type : Type(type.kind);
    const std::string value = tamed(other, 2);
    line(vector.name + (choice == 2 ? " += " : " -= ") + value + ";");
    if (!wraps(type.kind))
        line(vector.name + " = " + tamedText(type, vector.name) + ";");
}

void Generator::assignElements(const Variable& matrix) {
    const Type type = matrix.type, part{type.kind, type.lanes};
    const std::string column = matrix.name + "[" + index(type.columns) + "]";
    if (chance(50))
        return line(column + " = " + littleText(part, tamed(part, 2)) + ";");
    const std::string target = lane(column, type.lanes);
    line(target + " = " + typeName(type.kind) + "(float(" + leaf(Kind::unsigned_).text +
         " & 7u) - 3.5f);");
}

} // namespace tarnwick::trials
