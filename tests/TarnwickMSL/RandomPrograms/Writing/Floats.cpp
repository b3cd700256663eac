// Expressions of floats and halves.
#include "tests/TarnwickMSL/RandomPrograms/Writing/Generator.h"

#include <algorithm>
#include <array>

namespace tarnwick::trials {

namespace {

constexpr double exactFloatUnits = 1 << 23; // bound / quantum

std::string parenthesised(const std::string& left, const char* operation,
                          const std::string& right) {
    return "(" + left + " " + operation + " " + right + ")";
}

// bound / quantum. Half of what a half can hold: drivers may add in another order than the
// program, `(a + c) - b` for `(a - b) + c`.
constexpr double exactHalfUnits = 1 << 10;

bool isExact(const Expression& value) {
    return value.bound / value.quantum <= exactHalfUnits;
}

} // namespace

// Functions whose results are exact for tamed values; signs of values that are not zero.
Expression Generator::rareFloatExpression(int depth) {
    const std::string a = tamed(Kind::float_, depth - 1), b = tamed(Kind::float_, depth - 1);
    switch (below(7)) {
    case 0:
        return {"copysign(" + a + ", " + b + " + 0.125f)", 1024, 0.25};
    case 1:
        return {"sign(" + a + ")", 1, 1};
    case 2:
        return {"step(" + a + ", " + b + ")", 1, 1};
    case 3:
        return {"saturate(" + a + ")", 1, 0.25};
    case 4:
        return {"mix(" + a + ", " + b + ", 0.25f * float(" + leaf(Kind::unsigned_).text + " & 3u))",
                3072, 0.0625};
    case 5:
        return {"fma(" + a + ", " + std::to_string(below(9)) + ".5f, " + b + ")", 16384, 0.125};
    default:
        return {"ldexp(" + a + ", int(" + leaf(Kind::unsigned_).text + " & 3u))", 8192, 0.25};
    }
}

Expression Generator::floatExpression(int depth) {
    if (chance(12))
        return rareFloatExpression(depth);
    const Expression a = expression(Kind::float_, depth - 1);
    const Expression b = expression(Kind::float_, depth - 1);
    const double quantum = std::min(a.quantum, b.quantum);
    static constexpr std::array<const char*, 5> whole{"floor", "ceil", "trunc", "rint", "round"};
    switch (below(12)) {
    case 0:
    case 1:
    case 2: {
        const Expression sum{parenthesised(a.text, chance(50) ? "+" : "-", b.text),
                             a.bound + b.bound, quantum};
        return sum.bound / sum.quantum < exactFloatUnits ? sum : within(a, Kind::float_, 1024);
    }
    case 3:
    case 4: {
        const Expression left = within(a, Kind::float_, 1024);
        const Expression right = within(b, Kind::float_, 128);
        const Expression product{parenthesised(left.text, "*", right.text),
                                 left.bound * right.bound, left.quantum * right.quantum};
        return product.bound / product.quantum < exactFloatUnits ? product : left;
    }
    case 5:
        return {std::string(whole[below(5)]) + "(" + a.text + ")", a.bound + 1, 1};
    case 6:
        return {"abs(" + a.text + ")", a.bound, a.quantum};
    case 7:
        return {(chance(50) ? "min(" : "max(") + a.text + ", " + b.text + ")",
                std::max(a.bound, b.bound), quantum};
    case 8:
        if (chance(30)) {
            Expression value = expression(Kind::half_, depth - 1);
            value.text = "float(" + value.text + ")";
            return value;
        }
        return {"float(" + within(expression(Kind::signed_, depth - 1), Kind::signed_, 4096).text +
                    ")",
                4096, 1};
    case 9:
        return {"float(" + expression(Kind::unsigned_, depth - 1).text + " & 255u)", 255, 1};
    case 10:
        return {"fract(" + a.text + ")", 1, a.quantum};
    default:
        return {"clamp(" + a.text + ", -8.5f, 64.25f)", 64.25, std::min(a.quantum, 0.25)};
    }
}

Expression Generator::small(const Expression& value, Type type) {
    if (value.bound <= 4 && value.quantum >= 0.25)
        return value;
    return {littleText(type, within(value, type, exactHalfUnits).text), 4, 0.25};
}

// Of a half or of the lanes of a vector of halves.
Expression Generator::halfExpression(Type type, int depth) {
    const std::uint32_t choice = below(10);
    if (choice >= 7)
        return rareHalf(type, depth);
    const Type other = chance(60) ? type : Type(Kind::half_);
    const Expression a = expression(type, depth - 1), b = expression(other, depth - 1);
    if (choice < 4) {
        const Expression sum{"(" + a.text + (chance(50) ? " + " : " - ") + b.text + ")",
                             a.bound + b.bound, std::min(a.quantum, b.quantum)};
        return isExact(sum) ? sum : within(a, type, tameBound(type));
    }
    const Expression left = small(a, type), right = small(b, other);
    const Expression product{"(" + left.text + " * " + right.text + ")", left.bound * right.bound,
                             left.quantum * right.quantum};
    return isExact(product) ? product : left;
}

Expression Generator::rareHalf(Type type, int depth) {
    static constexpr std::array<const char*, 5> whole{"floor", "ceil", "trunc", "rint", "round"};
    const std::string to = typeName(type) + "(";
    const Type floats{Kind::float_, type.lanes}, words{Kind::unsigned_, type.lanes};
    const Expression a = expression(type, depth - 1);
    switch (below(6)) {
    case 0:
        return {std::string(whole[below(5)]) + "(" + a.text + ")", a.bound + 1, 1};
    case 1:
        return {(chance(50) ? "abs(" : "(-") + a.text + ")", a.bound, a.quantum};
    case 2:
        return {"fract(" + a.text + ")", 1, a.quantum};
    case 3:
        return {to + littleText(floats, tamed(floats, depth - 1)) + ")", 4, 0.25};
    case 4:
        return {to + "(" + expression(words, depth - 1).text + " & 255u))", 255, 1};
    default: {
        const Expression b = expression(type, depth - 1);
        return {(chance(50) ? "min(" : "max(") + a.text + ", " + b.text + ")",
                std::max(a.bound, b.bound), std::min(a.quantum, b.quantum)};
    }
    }
}

} // namespace tarnwick::trials
