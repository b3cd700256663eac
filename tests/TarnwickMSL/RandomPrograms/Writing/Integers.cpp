// Expressions of integers of every size.
#include "tests/TarnwickMSL/RandomPrograms/Writing/Generator.h"

#include <algorithm>
#include <array>

namespace tarnwick::trials {

namespace {

constexpr double exactSignedBound = 1 << 24;

std::string parenthesised(const std::string& left, const char* operation,
                          const std::string& right) {
    return "(" + left + " " + operation + " " + right + ")";
}

} // namespace

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
        return chance(60) ? integerFunction(Kind::unsigned_, depth) : narrowed(depth);
    if (chance(8))
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
    if (chance(5))
        return integerFunction(Kind::signed_, depth);
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

std::string Generator::unsignedFrom(int depth) {
    const Kind kind = anyInteger();
    const std::string value = expression(kind, depth - 1).text;
    return "uint(" + value + (bitsOf(kind) == 64 ? " >> " + std::to_string(below(40)) + "u)" : ")");
}

// Each operation is one of a wider type without a sign where the sum of two numbers is an int, or
// may overflow; its result is cut again.
Expression Generator::wrappingExpression(Kind kind, int depth) {
    static constexpr std::array<const char*, 6> plain{" + ", " - ", " ^ ", " & ", " | ", " * "};
    const std::uint32_t bits = bitsOf(kind);
    const std::string to = typeName(kind) + "(";
    const std::string a = expression(kind, depth - 1).text, b = leaf(kind).text;
    const std::string word = bits == 64 ? "ulong(" : "uint(";
    const std::string wide = kind == Kind::ulong_ ? a : word + a + ")";
    const std::string other = kind == Kind::ulong_ ? b : word + b + ")";
    const std::string by =
        "(" + leaf(Kind::unsigned_).text + " & " + std::to_string(bits - 1) + "u)";
    switch (below(12)) {
    case 0:
        return {to + wide + " << " + by + ")"};
    case 1:
        return {to + exactly(kind, a) + " >> " + by + ")"};
    case 2:
        if (isSigned(kind))
            return {to + exactly(kind, a) + (chance(50) ? " / " : " % ") +
                    std::to_string(2 + below(99)) + ")"};
        return {to + wide + (chance(50) ? " / (" : " % (") + other + " | 1u))"};
    case 3:
        return {(chance(50) ? "min(" : "max(") + a + ", " + b + ")"};
    case 4:
        if (bits < 64)
            return {to + expression(Kind::unsigned_, depth - 1).text + ")"};
        return {to + "ulong(" + expression(Kind::unsigned_, depth - 1).text + ") << 32u | " +
                leaf(Kind::unsigned_).text + ")"};
    case 5:
        return {to + expression(anyInteger(), depth - 1).text + ")"};
    case 6:
    case 7:
        return integerFunction(kind, depth);
    default:
        return {to + wide + plain[below(6)] + other + ")"};
    }
}

Kind Generator::anyInteger() {
    Kind kind = anyKind();
    while (isReal(kind))
        kind = anyKind();
    return kind;
}

// The functions of integers, of a number or of the lanes of a vector, with fields inside the
// number. The result of an int may be any, and so is tamed.
Expression Generator::integerFunction(Type type, int depth) {
    if (type.lanes != 3 && chance(15))
        return reinterpreted(type, depth);
    const auto of = [&](int level) { return exactly(type, expression(type, level).text); };
    const std::string half = std::to_string(bitsOf(type.kind) / 2 - 1) + "u), ";
    const std::string field = ", (" + leaf(Kind::unsigned_).text + " & " + half +
                              std::to_string(below(bitsOf(type.kind) / 2 + 1)) + "u";
    static constexpr std::array<const char*, 4> ofOne{"reverse_bits(", "clz(", "ctz(", "popcount("};
    static constexpr std::array<const char*, 7> ofTwo{"mulhi(", "absdiff(", "addsat(", "subsat(",
                                                      "hadd(",  "rhadd(",   "rotate("};
    static constexpr std::array<const char*, 5> ofThree{"madhi(", "madsat(", "min3(", "max3(",
                                                        "median3("};
    std::string text;
    switch (below(6)) {
    case 0:
        text = ofOne[below(4)] + of(depth - 1) + ")";
        break;
    case 1:
        text = "extract_bits(" + of(depth - 1) + field + ")";
        break;
    case 2:
        text = "insert_bits(" + of(depth - 1) + ", " + of(0) + field + ")";
        break;
    case 3:
        if (type.kind == Kind::unsigned_ && chance(40))
            text = "mad24(" + of(depth - 1) + " & 0xffffffu, " + of(0) + " & 0xffffffu, " + of(0) +
                   ")";
        else
            text = ofThree[below(5)] + of(depth - 1) + ", " + of(0) + ", " + of(0) + ")";
        break;
    default:
        text = ofTwo[below(7)] + of(depth - 1) + ", " + of(0) + ")";
    }
    if (type.kind == Kind::signed_)
        return {tamedText(type, exactly(type, text)), tameBound(type)};
    return {exactly(type, text)};
}

// The bits of integers of other sizes.
Expression Generator::reinterpreted(Type type, int depth) {
    static constexpr std::array<Kind, 8> integers{Kind::unsigned_, Kind::signed_, Kind::ushort_,
                                                  Kind::short_,    Kind::uchar_,  Kind::char_,
                                                  Kind::ulong_,    Kind::long_};
    std::vector<Type> fitting;
    for (const Kind kind : integers)
        for (const std::uint32_t lanes : {1u, 2u, 4u})
            if (bitsOf(kind) * lanes == bitsOf(type.kind) * type.lanes)
                fitting.push_back({kind, lanes});
    const Type from = any(fitting);
    const std::string value = exactly(from, expression(from, depth - 1).text);
    const std::string text = "as_type<" + typeName(type) + ">(" + value + ")";
    if (type.kind == Kind::signed_)
        return {tamedText(type, text), tameBound(type)};
    return {text};
}

} // namespace tarnwick::trials
