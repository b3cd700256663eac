// The types of a random program's values, and what keeps values exact.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarnwick::trials {

enum class Kind : std::uint8_t {
    unsigned_,
    signed_,
    float_,
    half_,
    ushort_,
    ulong_,
    uchar_,
    char_,
    short_,
    long_
};

// Integers whose arithmetic wraps in programs: all but int, which is kept from overflowing.
inline bool wraps(Kind kind) {
    return kind != Kind::signed_ && kind != Kind::float_ && kind != Kind::half_;
}
inline bool isReal(Kind kind) {
    return kind == Kind::float_ || kind == Kind::half_;
}
inline bool isSigned(Kind kind) {
    return kind == Kind::signed_ || kind == Kind::char_ || kind == Kind::short_ ||
           kind == Kind::long_;
}
inline std::uint32_t bitsOf(Kind kind) {
    switch (kind) {
    case Kind::uchar_:
    case Kind::char_:
        return 8;
    case Kind::half_:
    case Kind::ushort_:
    case Kind::short_:
        return 16;
    case Kind::unsigned_:
    case Kind::signed_:
    case Kind::float_:
        return 32;
    case Kind::ulong_:
    case Kind::long_:
        return 64;
    }
    return 32;
}

// A scalar, a vector of 2 to 4 lanes, or a matrix of floats or halves with 2 to 4 columns of so
// many lanes.
struct Type {
    Kind kind = Kind::unsigned_;
    std::uint32_t lanes = 1, columns = 1;

    Type(Kind kind, std::uint32_t lanes = 1, std::uint32_t columns = 1)
        : kind(kind), lanes(lanes), columns(columns) {}
    bool operator==(const Type&) const = default;
    bool isScalar() const { return lanes == 1; }
    bool isMatrix() const { return columns > 1; }
    bool isVector() const { return lanes > 1 && columns == 1; }
};

std::string typeName(Type type);

// Where a variable is.
enum class Space : std::uint8_t { thread, device, threadgroup, constant };
std::string spaceName(Space space); // with a blank behind it

// The swizzles that programs use of a vector with this number of lanes; the native vectors have the
// same.
std::vector<std::string> swizzlesOf(std::uint32_t lanes);

// What a tamed value of the type is below.
inline double tameBound(Type type) {
    return type.isMatrix() ? 4 : type.kind == Kind::half_ ? 128 : 1024;
}

// Calls of the functions that a program has for its types: the value within tameBound(), within 4,
// and as bits.
std::string tamedText(Type type, const std::string& value);
std::string littleText(Type type, const std::string& value);
std::string bitsText(Type type, const std::string& value);

// The value with the type's name around it: exactly this type, where the text of an expression may
// be of another one (a swizzle, a sum of shorts).
inline std::string exactly(Type type, const std::string& value) {
    return typeName(type) + "(" + value + ")";
}

// The body with those functions before it that it calls.
std::string withPrelude(const std::string& body);

// Text and the bound of its value (for integers that wrap without meaning).
struct Expression {
    std::string text;
    double bound = 0;   // |value| <= bound
    double quantum = 1; // floats: value is a multiple of this power of two
};

} // namespace tarnwick::trials
