// Expressions of halves and of unsigned numbers of 16 and 64 bits, bools, and packed vectors.
#include "tests/TarnwickMSL/RandomPrograms/Generator.h"

#include <algorithm>
#include <array>

namespace tarnwick::trials {

namespace {

// bound / quantum. Half of what a half can hold: drivers may add in another order than the
// program, `(a + c) - b` for `(a - b) + c`.
constexpr double exactHalfUnits = 1 << 10;

bool isExact(const Expression& value) {
    return value.bound / value.quantum <= exactHalfUnits;
}

} // namespace

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

Expression Generator::wrappingExpression(Kind kind, int depth) {
    static constexpr std::array<const char*, 5> plain{" + ", " - ", " ^ ", " & ", " | "};
    const std::string to = typeName(kind) + "(";
    const std::string a = expression(kind, depth - 1).text, b = leaf(kind).text;
    const std::string wide = kind == Kind::ushort_ ? "uint(" + a + ")" : a;
    const std::string by =
        "(" + leaf(Kind::unsigned_).text + (kind == Kind::ushort_ ? " & 15u)" : " & 63u)");
    switch (below(9)) {
    case 0:
        return {to + wide + " * " + b + ")"};
    case 1:
        return {to + wide + (chance(50) ? " >> " : " << ") + by + ")"};
    case 2:
        return {to + wide + (chance(50) ? " / (" : " % (") + b + " | 1u))"};
    case 3:
        return {(chance(50) ? "min(" : "max(") + a + ", " + b + ")"};
    case 4:
        if (kind == Kind::ushort_)
            return {to + expression(Kind::unsigned_, depth - 1).text + ")"};
        return {"(ulong(" + expression(Kind::unsigned_, depth - 1).text + ") << 32u | " +
                leaf(Kind::unsigned_).text + ")"};
    default:
        return {to + wide + plain[below(5)] + b + ")"};
    }
}

std::string Generator::unsignedFrom(int depth) {
    if (chance(50))
        return "uint(" + expression(Kind::ushort_, depth - 1).text + ")";
    return "uint(" + expression(Kind::ulong_, depth - 1).text + " >> " + std::to_string(below(40)) +
           "u)";
}

void Generator::declareFlag() {
    const Flag made{fresh("f"), chance(60) ? 1 : 2 + below(3)};
    if (made.lanes == 1) {
        line("bool " + made.name + " = " + condition(2) + ";");
    } else {
        const Type type{anyKind(), made.lanes};
        line("bool" + std::to_string(made.lanes) + " " + made.name + " = " + leaf(type).text +
             (chance(50) ? " < " : " != ") + expression(type, 1).text + ";");
    }
    scope_.flags.push_back(made);
}

void Generator::assignFlag() {
    const Flag flag = any(scope_.flags);
    const std::string target = flag.lanes == 1 ? flag.name : lane(flag.name, flag.lanes);
    line(target + " = " + (chance(20) ? "!" + target : condition(2)) + ";");
}

std::string Generator::flagTest() {
    const Flag flag = any(scope_.flags);
    if (flag.lanes == 1)
        return flag.name;
    if (chance(40))
        return lane(flag.name, flag.lanes);
    return (chance(50) ? "any(" : "all(") + flag.name + ")";
}

void Generator::declarePacked() {
    const Kind kind = anyKind();
    const Type type{kind == Kind::ulong_ ? Kind::float_ : kind, 2 + below(3)};
    const std::string name = fresh("p"), packed = "packed_" + typeName(type);
    line(packed + " " + name + " = " + packed + "(" + tamed(type, 2) + ");");
    scope_.packed.push_back({name, type, true});
}

void Generator::assignPacked(const Variable& packed) {
    if (!packed.writable)
        return stir();
    const Type type = packed.type;
    if (chance(40))
        return line(lane(packed.name, type.lanes) + " = " + tamed(type.kind, 2) + ";");
    line(packed.name + " = packed_" + typeName(type) + "(" + tamed(type, 2) + ");");
}

} // namespace tarnwick::trials
