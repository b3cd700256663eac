#include "tests/TarnwickMSL/RandomPrograms/Writing/Generator.h"

#include <algorithm>
#include <array>

namespace tarnwick::trials {

// Half of all numbers are the three kinds of 32 bits.
Kind Generator::anyKind() {
    const std::uint32_t choice = below(18);
    if (choice < 9)
        return static_cast<Kind>(choice / 3);
    static constexpr std::array<Kind, 9> rest{Kind::half_,  Kind::half_,  Kind::ushort_,
                                              Kind::ulong_, Kind::uchar_, Kind::char_,
                                              Kind::short_, Kind::short_, Kind::long_};
    return rest[choice - 9];
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
    return {chance(75) ? Kind::float_ : Kind::half_, 2 + below(3), 2 + below(3)};
}

// Counted by the golden ratio's bits and mixed (SplitMix64).
static std::uint64_t scrambled(std::uint64_t value) {
    value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9u;
    value = (value ^ (value >> 27)) * 0x94D049BB133111EBu;
    return value ^ (value >> 31);
}

// The seed is mixed too, else the numbers of one seed would be those of the next, shifted by one.
Generator::Generator(std::uint64_t seed) : state_(scrambled(seed + 0x9E3779B97F4A7C15u)) {}

std::uint32_t Generator::below(std::uint32_t end) {
    state_ += 0x9E3779B97F4A7C15u;
    return static_cast<std::uint32_t>(scrambled(state_) % end);
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
    case Kind::uchar_:
        return {"uchar(" + std::to_string(chance(30) ? 255u >> below(2) : below(100)) + "u)"};
    case Kind::char_:
        return {"char(" + std::to_string(static_cast<int>(below(256)) - 128) + ")"};
    case Kind::short_:
        return {"short(" +
                std::to_string(chance(30) ? 32767 - static_cast<int>(below(2)) * 65535
                                          : static_cast<int>(below(201)) - 100) +
                ")"};
    case Kind::ulong_:
        return {chance(30) ? "0x80000000fffffffful" : "ulong(" + std::to_string(below(100)) + "u)"};
    case Kind::long_:
        return {chance(30) ? "long(0x80000000fffffffful)"
                           : "long(" + std::to_string(static_cast<int>(below(201)) - 100) + ")"};
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

// "[i]", or "[i][j]" of an array of arrays.
std::string Generator::placeIn(const Array& array) {
    const auto one = [&](std::uint32_t length) {
        return "[" + (chance(70) ? index(length) : std::to_string(below(length))) + "]";
    };
    const std::string row = array.rows > 0 ? one(array.rows) : "";
    return row + one(array.length) + array.member;
}

Expression Generator::element(const Array& array) {
    return {array.name + placeIn(array), tameBound(array.type), 0.25};
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
    return isLane || (whole.isMatrix() && part == Type{whole.kind, whole.lanes});
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
    if (type == Kind::unsigned_ && !scope_.fields.empty() && chance(12))
        return {"uint(" + any(scope_.fields).name + ")"};
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
    if (!type.isMatrix() && chance(6) && hasTexels(type.kind))
        return texture(type);
    if (chance(4) && !type.isMatrix())
        return selected(type, depth);
    if (chance(10))
        if (const Function* function = anyFunction(type))
            return call(*function, depth - 1);
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
        return chance(15) ? dotted(kind, depth) : floatExpression(depth);
    case Kind::half_:
        return chance(10) ? dotted(kind, depth) : halfExpression(kind, depth);
    default:
        return wrappingExpression(kind, depth);
    }
}

// One of two values as a function, which evaluates both.
Expression Generator::selected(Type type, int depth) {
    const Expression no = expression(type, depth - 1), yes = expression(type, depth - 1);
    const std::string from = exactly(type, no.text) + ", " + exactly(type, yes.text);
    const std::string text = chance(50) ? "chosen(" + condition(0) + ", " + from + ")"
                             : type.isScalar()
                                 ? "select(" + from + ", " + condition(0) + ")"
                                 : "select(" + from + ", " + lanewise(type.lanes, 0) + ")";
    return {text, std::max(yes.bound, no.bound), std::min(yes.quantum, no.quantum)};
}

// A function or a lambda of that result without side effects.
const Generator::Function* Generator::anyFunction(Type result) {
    std::vector<const Function*> found;
    for (const auto* list : {&functions_, &scope_.lambdas})
        for (const Function& function : *list)
            if (function.result == result && function.isPure() && affords(function.iterations) &&
                (scope_.hasWorld || !function.takesWorld))
                found.push_back(&function);
    return found.empty() ? nullptr : any(found);
}

// A call without side effects. Overloads are told apart by the exact types of the arguments.
Expression Generator::call(const Function& function, int depth) {
    iterations_ += function.iterations * multiplier_;
    const std::size_t all = function.values.size();
    const std::size_t given = all - (function.defaults > 0 ? below(function.defaults + 1) : 0);
    std::string text = function.name + (function.takesWorld ? "(world, " : "(");
    for (std::size_t i = 0; i < given; i++)
        text += (i > 0 ? ", " : "") + exactly(function.values[i], tamed(function.values[i], depth));
    if (given == 0 && function.takesWorld)
        text.resize(text.size() - 2);
    return {text + ")", tameBound(function.result), 0.25};
}

} // namespace tarnwick::trials
