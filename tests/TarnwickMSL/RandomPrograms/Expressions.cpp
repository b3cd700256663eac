#include "tests/TarnwickMSL/RandomPrograms/Generator.h"

#include <algorithm>
#include <array>

namespace tarnwick::trials {

namespace {

constexpr double exactSignedBound = 1 << 24;
constexpr double exactFloatUnits = 1 << 23; // bound / quantum

std::string parenthesised(const std::string& left, const char* operation,
                          const std::string& right) {
    return "(" + left + " " + operation + " " + right + ")";
}

} // namespace

static const char* scalarName(Kind kind) {
    switch (kind) {
    case Kind::unsigned_:
        return "uint";
    case Kind::signed_:
        return "int";
    case Kind::float_:
        return "float";
    case Kind::half_:
        return "half";
    case Kind::ushort_:
        return "ushort";
    case Kind::ulong_:
        return "ulong";
    }
    return "";
}

std::string typeName(Type type) {
    return scalarName(type.kind) + (type.isMatrix() ? std::to_string(type.columns) + "x" : "") +
           (type.isScalar() ? "" : std::to_string(type.lanes));
}

Kind Generator::anyKind() {
    const std::uint32_t choice = below(13);
    return choice < 9 ? static_cast<Kind>(choice / 3)
                      : (choice < 11 ? Kind::half_ : (choice == 11 ? Kind::ushort_ : Kind::ulong_));
}

// One that there is a variable of, so that values meet; else half of all are scalars.
Type Generator::anyType() {
    if (chance(60) && !scope_.variables.empty())
        return any(scope_.variables).type;
    const std::uint32_t choice = below(20);
    if (choice < 10)
        return anyKind();
    if (choice < 17)
        return anyVector();
    return {Kind::float_, 2 + below(3), 2 + below(3)};
}

std::uint32_t Generator::below(std::uint32_t end) {
    state_ += 0x9E3779B97F4A7C15u;
    std::uint64_t mixed = state_;
    mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9u;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBu;
    mixed ^= mixed >> 31;
    return static_cast<std::uint32_t>(mixed % end);
}

Expression Generator::literal(Kind kind) {
    switch (kind) {
    case Kind::unsigned_: {
        static constexpr std::array<const char*, 8> odd{
            "0u", "1u", "0xffffffffu", "0x80000000u", "0x7fffffffu", "31u", "2654435761u", "255u"};
        return {chance(40) ? odd[below(odd.size())] : std::to_string(below(100)) + "u"};
    }
    case Kind::signed_: {
        const int value = static_cast<int>(below(201)) - 100;
        return {value < 0 ? "(" + std::to_string(value) + ")" : std::to_string(value), 100};
    }
    case Kind::float_: {
        static constexpr std::array<const char*, 8> exact{"0.0f",  "1.0f",  "0.5f",    "2.0f",
                                                          "-1.5f", "7.25f", "-100.0f", "0.25f"};
        return {exact[below(exact.size())], 100, 0.25};
    }
    case Kind::half_: {
        Expression value = literal(Kind::float_);
        value.text = "half(" + value.text + ")";
        return value;
    }
    case Kind::ushort_:
        return {"ushort(" + std::to_string(chance(30) ? 65535u >> below(2) : below(100)) + "u)"};
    case Kind::ulong_:
        return {chance(30) ? "0x80000000fffffffful" : "ulong(" + std::to_string(below(100)) + "u)"};
    }
    return {};
}

// An index that stays inside, as the power of two's mask where there is one.
std::string Generator::index(std::uint32_t length) {
    const std::string at = leaf(Kind::unsigned_).text;
    const std::uint32_t form = below(8);
    if (form == 0) // a choice of two elements
        return "((" + at + " & 4u) != 0u ? " + std::to_string(below(length)) +
               "u : " + std::to_string(below(length)) + "u)";
    if (form == 1) // any but the first
        return "(" + at + " % " + std::to_string(length - 1) + "u + 1u)";
    if ((length & (length - 1)) == 0)
        return "(" + at + " & " + std::to_string(length - 1) + "u)";
    return "(" + at + " % " + std::to_string(length) + "u)";
}

Expression Generator::element(const Array& array) {
    const std::string at = chance(70) ? index(array.length) : std::to_string(below(array.length));
    return {array.name + "[" + at + "]" + array.member, tameBound(array.type), 0.25};
}

static const char* memberOf(Type type) {
    struct Member {
        Type type;
        const char* name;
    };
    static const std::array<Member, 6> members{
        Member{Kind::unsigned_, ".count"},   Member{Kind::signed_, ".level"},
        Member{Kind::float_, ".weight"},     Member{{Kind::float_, 3}, ".place"},
        Member{{Kind::signed_, 2}, ".cell"}, Member{{Kind::float_, 2, 2}, ".turn"}};
    for (const Member& member : members)
        if (member.type == type)
            return member.name;
    return nullptr;
}

static bool holds(Type whole, Type part) {
    if (whole == part)
        return true;
    bool isLane = part.isScalar() && !whole.isScalar() && whole.kind == part.kind;
    return isLane || (whole.isMatrix() && part == Type{Kind::float_, whole.lanes});
}

Expression Generator::partOf(const Variable& variable, Type type) {
    std::string text = variable.name;
    if (variable.type.isMatrix() && !type.isMatrix())
        text += "[" + index(variable.type.columns) + "]";
    if (type.isScalar() && !variable.type.isScalar())
        text = lane(text, variable.type.lanes);
    return {text, tameBound(variable.type), 0.25};
}

// Packed vectors have lanes, and become vectors as wholes.
Expression Generator::partOfPacked(const Variable& variable, Type type) {
    const std::string text = type.isScalar() ? lane(variable.name, variable.type.lanes)
                                             : typeName(type) + "(" + variable.name + ")";
    return {text, tameBound(variable.type), 0.25};
}

// A variable, a lane of one or a column, a record's member, or a literal. Variables of ints and
// floats hold tamed values.
Expression Generator::leaf(Type type) {
    std::vector<const Variable*> found;
    for (const Variable& variable : scope_.variables)
        if (holds(variable.type, type))
            found.push_back(&variable);
    const std::size_t unpacked = found.size();
    for (const Variable& variable : scope_.packed)
        if (holds(variable.type, type))
            found.push_back(&variable);
    const char* member = memberOf(type);
    const std::size_t all = found.size() + (member ? scope_.records.size() : 0);
    if (all == 0 || chance(20))
        return type.isScalar() ? literal(type.kind) : composite(type);
    const std::size_t at = below(static_cast<std::uint32_t>(all));
    if (at < unpacked)
        return partOf(*found[at], type);
    if (at < found.size())
        return partOfPacked(*found[at], type);
    return {scope_.records[at - found.size()] + member, tameBound(type), 0.25};
}

// The value itself where its bound allows, tamed where not.
Expression Generator::within(Expression value, Type type, double bound) {
    const bool exact =
        value.bound <= bound && (type.kind == Kind::signed_ || value.quantum >= 0.25);
    if (wraps(type.kind) || exact)
        return value;
    return {tamedText(type, value.text), tameBound(type), 0.25};
}

std::string Generator::tamed(Type type, int depth) {
    return within(expression(type, depth), type, tameBound(type)).text;
}

Expression Generator::expression(Type type, int depth) {
    if (depth <= 0)
        return leaf(type);
    if (chance(8)) {
        const std::string question = condition(depth - 1);
        const Expression yes = expression(type, depth - 1);
        const Expression no = expression(type, depth - 1);
        // Two swizzles have no common type in native code.
        const std::string as = type.isScalar() || type.isMatrix() ? "" : typeName(type);
        return {"(" + question + " ? " + as + "(" + yes.text + ") : " + as + "(" + no.text + "))",
                std::max(yes.bound, no.bound), std::min(yes.quantum, no.quantum)};
    }
    if (chance(12) && !scope_.arrays.empty()) {
        const Array& array = any(scope_.arrays);
        if (array.type == type)
            return element(array);
    }
    if (chance(10))
        for (const Function& function : functions_)
            if (function.result == type && function.references.empty() &&
                function.arrayLength == 0 && affords(function.iterations))
                return call(function, depth - 1);
    if (type.isScalar())
        return scalarExpression(type.kind, depth);
    return type.isMatrix() ? matrixExpression(type, depth) : vectorExpression(type, depth);
}

Expression Generator::scalarExpression(Kind kind, int depth) {
    switch (kind) {
    case Kind::unsigned_:
        return unsignedExpression(depth);
    case Kind::signed_:
        return signedExpression(depth);
    case Kind::float_:
        return chance(15) ? dotted(depth) : floatExpression(depth);
    case Kind::half_:
        return halfExpression(kind, depth);
    case Kind::ushort_:
    case Kind::ulong_:
        return wrappingExpression(kind, depth);
    }
    return {};
}

// A call without side effects.
Expression Generator::call(const Function& function, int depth) {
    iterations_ += function.iterations * multiplier_;
    std::string text = function.name + "(";
    for (std::size_t i = 0; i < function.values.size(); i++)
        text += (i > 0 ? ", " : "") + tamed(function.values[i], depth);
    return {text + ")", tameBound(function.result), 0.25};
}

// Functions of bits, with fields inside the number.
Expression Generator::bitExpression(int depth) {
    const std::string a = expression(Kind::unsigned_, depth - 1).text,
                      b = leaf(Kind::unsigned_).text;
    const std::string field =
        ", (" + leaf(Kind::unsigned_).text + " & 15u), " + std::to_string(below(17)) + "u)";
    static constexpr std::array<const char*, 3> ofOne{"reverse_bits(", "clz(", "ctz("};
    static constexpr std::array<const char*, 7> ofTwo{"mulhi(", "absdiff(", "addsat(", "subsat(",
                                                      "hadd(",  "rhadd(",   "rotate("};
    switch (below(5)) {
    case 0:
        return {ofOne[below(3)] + a + ")"};
    case 1:
        return {"extract_bits(" + a + field};
    case 2:
        return {"insert_bits(" + a + ", " + b + field};
    default:
        return {ofTwo[below(7)] + a + ", " + b + ")"};
    }
}

// Through a type of 8, 16 or 64 bits, or the bits of a float that is not zero.
Expression Generator::narrowed(int depth) {
    const std::string a = expression(Kind::unsigned_, depth - 1).text,
                      b = leaf(Kind::unsigned_).text;
    static constexpr std::array<const char*, 4> types{"uchar(", "ushort(", "char(", "short("};
    switch (below(5)) {
    case 0:
        return {"uint((ulong(" + a + ") * " + b + ") >> " + std::to_string(1 + below(40)) + "u)"};
    case 1:
        return {"uint((ulong(" + a + ") << 32u | " + b + ") % " + std::to_string(3 + below(1000)) +
                "u)"};
    case 2: {
        const std::string value = tamed(Kind::float_, depth - 1);
        return {"as_type<uint>(abs(" + value + ") + 0.25f)"};
    }
    default:
        return {"uint(" + std::string(types[below(4)]) + a + "))"};
    }
}

Expression Generator::unsignedExpression(int depth) {
    if (chance(15))
        return chance(60) ? bitExpression(depth) : narrowed(depth);
    if (chance(6))
        return {unsignedFrom(depth)};
    const std::string a = expression(Kind::unsigned_, depth - 1).text;
    static constexpr std::array<const char*, 6> plain{"+", "-", "*", "^", "&", "|"};
    const std::uint32_t choice = below(18);
    if (choice < 8)
        return {parenthesised(a, plain[below(6)], expression(Kind::unsigned_, depth - 1).text)};
    switch (choice) {
    case 8:
        return {parenthesised(a, "<<", "(" + leaf(Kind::unsigned_).text + " & 31u)")};
    case 9:
        return {parenthesised(a, ">>", "(" + leaf(Kind::unsigned_).text + " & 31u)")};
    case 10:
        return {parenthesised(a, "/", "(" + leaf(Kind::unsigned_).text + " | 1u)")};
    case 11:
        return {parenthesised(a, "%", "(" + leaf(Kind::unsigned_).text + " | 1u)")};
    case 12:
        return {"~" + a};
    case 13:
        return {(chance(50) ? "min(" : "max(") + a + ", " +
                expression(Kind::unsigned_, depth - 1).text + ")"};
    case 14:
        return {"uint(" + expression(Kind::signed_, depth - 1).text + ")"};
    case 15:
        return {"popcount(" + a + ")"};
    case 16:
        return {"(" + comparison(depth - 1) + " ? 1u : " + a + ")"};
    default:
        return {"clamp(" + a + ", 3u, " + std::to_string(4 + below(1000)) + "u)"};
    }
}

Expression Generator::signedExpression(int depth) {
    const Expression a = expression(Kind::signed_, depth - 1);
    const Expression b = expression(Kind::signed_, depth - 1);
    if (chance(8)) {
        const std::uint32_t choice = below(3);
        const std::string bits = expression(Kind::unsigned_, depth - 1).text;
        return choice == 0 ? Expression{"int(char(" + a.text + "))", 128}
               : choice == 1
                   ? Expression{"int(short(" + bits + "))", 32768}
                   : Expression{"(int(" + bits + ") >> " + std::to_string(9 + below(20)) + ")",
                                1 << 22};
    }
    switch (below(12)) {
    case 0:
    case 1:
    case 2:
        return within({parenthesised(a.text, chance(50) ? "+" : "-", b.text), a.bound + b.bound},
                      Kind::signed_, exactSignedBound);
    case 3:
    case 4: {
        const Expression left = within(a, Kind::signed_, 2048);
        const Expression right = within(b, Kind::signed_, 2048);
        return {parenthesised(left.text, "*", right.text), left.bound * right.bound};
    }
    case 5:
        return {parenthesised(a.text, "%", std::to_string(2 + below(60))), 62};
    case 6:
        return {"abs(" + a.text + ")", a.bound};
    case 7:
        return {(chance(50) ? "min(" : "max(") + a.text + ", " + b.text + ")",
                std::max(a.bound, b.bound)};
    case 8:
        return {"int(" + expression(Kind::unsigned_, depth - 1).text + " & 1023u)", 1023};
    case 9:
        return {"int(" + within(expression(Kind::float_, depth - 1), Kind::float_, 4096).text + ")",
                4096};
    case 10:
        return {parenthesised(a.text, ">>", std::to_string(below(7))), a.bound + 1};
    default:
        return {parenthesised(a.text, chance(50) ? "&" : "^", b.text),
                2 * std::max(a.bound, b.bound)};
    }
}

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

std::string Generator::comparison(int depth) {
    static constexpr std::array<const char*, 6> operations{"<", "<=", ">", ">=", "==", "!="};
    const Kind kind = anyKind();
    const std::string left = expression(kind, depth).text;
    const char* operation = operations[below(6)];
    return "(" + left + " " + operation + " " + expression(kind, depth).text + ")";
}

std::string Generator::condition(int depth) {
    // Bits of what changes fast make both branches likely.
    if (chance(45))
        return "((" + leaf(Kind::unsigned_).text + " & " + std::to_string(1 + below(7)) +
               "u) == " + std::to_string(below(2)) + "u)";
    if (!scope_.flags.empty() && chance(35))
        return flagTest();
    if (depth > 0 && chance(20))
        return vectorCondition(depth);
    if (depth <= 0 || chance(50))
        return comparison(depth);
    if (chance(25))
        return "!" + condition(depth - 1);
    const std::string left = condition(depth - 1);
    const char* operation = chance(50) ? " && " : " || ";
    return "(" + left + operation + condition(depth - 1) + ")";
}

// A condition that changes a variable where it is evaluated so far.
std::string Generator::effectfulCondition() {
    const std::string variable = writableVariable(Kind::unsigned_);
    if (variable.empty())
        return condition(1);
    const std::string bump = "(bump(" + variable + ", " + leaf(Kind::unsigned_).text + ") & " +
                             std::to_string(1 + below(7)) + "u) != 0u";
    const std::string left = condition(1);
    const char* operation = chance(50) ? " && " : " || ";
    std::string text = "(" + left + operation + bump + ")";
    if (chance(40))
        text = "(" + text + (chance(50) ? " && " : " || ") + condition(1) + ")";
    return text;
}

} // namespace tarnwick::trials
