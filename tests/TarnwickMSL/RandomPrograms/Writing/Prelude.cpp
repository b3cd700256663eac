// The functions that programs have for their types. Their names have the type ("tame_float3"),
// since overloads would take most of a compiler's time.
#include "tests/TarnwickMSL/RandomPrograms/Writing/Generator.h"

#include <cctype>
#include <utility>

namespace tarnwick::trials {

namespace {

// A function, or a record with its own.
struct Piece {
    std::string name; // how programs call it
    std::string text; // calls only pieces before it
};

constexpr const char* state = R"(struct State {
    uint count;
    int level;
    float weight;
    uint slots[3];
    float3 place;
    int2 cell;
    float2x2 turn;
    uint next(uint by) {
        slots[by % 3u] += by;
        count = count * 5u + slots[0];
        return count;
    }
    uint digest() const {
        uint h = mixed(mixed(count, bits_int(level)), mixed(bits_float(weight), slots[0] ^ slots[1] ^ slots[2]));
        return mixed(mixed(h, bits_float3(place)), mixed(bits_int2(cell), bits_float2x2(turn)));
    }
};
)";

constexpr const char* advanced = R"(State advanced(State state, uint by) {
    state.level = tame_int(state.level * 3 + int(by & 15u));
    state.weight = tame_float(state.weight * 0.5f + 1.25f);
    state.slots[by & 1u] = state.count;
    state.place.xy = tame_float2(state.turn * state.place.zx + 0.75f);
    state.cell = tame_int2(state.cell.yx * 3 + int2(1, -2));
    return state;
}
)";

constexpr const char* advance = R"(void advance(thread State& state, uint by) {
    state.count ^= by >> 2u;
    if ((by & 3u) == 1u) return;
    state.weight = state.weight > 512.0f ? 0.5f : tame_float(state.weight + 3.75f);
    state.slots[2] += state.next(by);
    state.place = tame_float3(state.place.yzx * state.turn[0].x + state.weight);
    state.turn = tame_float2x2(float2x2(little_float2(state.place.xy), little_float2(state.place.zz)) * state.turn);
}
)";

constexpr Kind kinds[] = {Kind::unsigned_, Kind::signed_, Kind::float_, Kind::half_,  Kind::ushort_,
                          Kind::ulong_,    Kind::uchar_,  Kind::char_,  Kind::short_, Kind::long_};

std::string function(const std::string& result, const std::string& name, Type type,
                     const std::string& body) {
    return result + " " + name + "_" + typeName(type) + "(" + typeName(type) + " v) { " + body +
           " }\n";
}

// The value less a multiple of `size`, in quarters and in [0, size).
std::string remainder(Type type, const char* size, const char* inverse) {
    const bool isHalf = type.kind == Kind::half_;
    const auto number = [&](const char* value) {
        return isHalf ? "half(" + std::string(value) + ")" : value;
    };
    const std::string name = typeName(type);
    return name + " q = floor(v * " + number("4.0f") + ") * " + number("0.25f") +
           "; return q - floor(q * " + number(inverse) + ") * " + number(size);
}

std::string bitsBody(Type type) {
    if (!type.isScalar())
        return "return mixed(" + bitsText(type.kind, "v.x") + ", " + bitsText(type.kind, "v.y") +
               ")" + (type.lanes > 2 ? " ^ " + bitsText(type.kind, "v.z") + " * 3u" : "") +
               (type.lanes > 3 ? " ^ " + bitsText(type.kind, "v.w") + " * 5u;" : ";");
    if (bitsOf(type.kind) == 64)
        return "return uint(v) ^ uint(v >> 32u);";
    return !isReal(type.kind) ? "return uint(v);" : "return uint(int(float(v) * 16.0f));";
}

void addFunctions(std::vector<Piece>& pieces, Type type) {
    const std::string name = typeName(type);
    const bool isHalf = type.kind == Kind::half_;
    if (type.kind == Kind::signed_)
        pieces.push_back({"tame_" + name, function(name, "tame", type, "return v % 1000;")});
    if (type.kind == Kind::float_ || isHalf) {
        const std::string large = isHalf ? remainder(type, "128.0f", "0.0078125f")
                                         : remainder(type, "1024.0f", "0.0009765625f");
        pieces.push_back({"tame_" + name, function(name, "tame", type, large + ";")});
        const std::string four = isHalf ? " - half(4.0f);" : " - 4.0f;";
        pieces.push_back({"little_" + name, function(name, "little", type,
                                                     remainder(type, "8.0f", "0.125f") + four)});
    }
    pieces.push_back({"bits_" + name, function("uint", "bits", type, bitsBody(type))});
}

void addMatrixFunctions(std::vector<Piece>& pieces, Type type) {
    const std::string name = typeName(type);
    const Type column{type.kind, type.lanes};
    std::string tamed, bits = "0u";
    for (std::uint32_t i = 0; i < type.columns; i++) {
        const std::string at = "v[" + std::to_string(i) + "]";
        tamed += (i > 0 ? ", " : "") + littleText(column, at);
        bits = "mixed(" + bits + ", " + bitsText(column, at) + ")";
    }
    pieces.push_back(
        {"tame_" + name, function(name, "tame", type, "return " + name + "(" + tamed + ");")});
    pieces.push_back({"bits_" + name, function("uint", "bits", type, "return " + bits + ";")});
}

constexpr const char* chosen = R"(template <class T> T chosen(bool first, T a, T b) {
    return first ? a : b;
}
)";

constexpr const char* exchange = R"(template <class T> void exchange(thread T& a, thread T& b) {
    T kept = a;
    a = b;
    b = kept;
}
)";

constexpr const char* repeated = R"(template <class Body> void repeated(uint n, Body body) {
    for (uint i = 0u; i < n; i++)
        if (!body(i)) break;
}
)";

constexpr const char* folded = R"(template <class T, uint n, class Bits>
uint folded(thread const T (&values)[n], uint h, Bits bits) {
    for (uint i = 0u; i < n; i++) h = mixed(h, bits(values[i]));
    return h;
}
)";

constexpr const char* unrolled = R"(template <uint n> uint unrolled(uint h) {
    if constexpr (n == 0u) return h;
    else return unrolled<n - 1u>(mixed(h, n) + (h >> n));
}
)";

constexpr const char* ring = R"(template <class T, uint n> struct Ring {
    T slots[n];
    uint at;
    void push(T value) {
        slots[at] = value;
        at = at + 1u < n ? at + 1u : 0u;
    }
    T oldest() const { return slots[at]; }
    T back(uint by) const { return slots[(at + by % n) % n]; }
};
)";

std::vector<Piece> allPieces() {
    std::vector<Piece> pieces = {{"mixed(", R"(uint mixed(uint h, uint value) {
    h = (h ^ value) * 0x9E3779B1u;
    return h ^ (h >> 15u);
}
)"},
                                 {"bump(", R"(uint bump(thread uint& value, uint by) {
    value += by | 1u;
    return value;
}
)"}};
    for (std::uint32_t lanes = 1; lanes <= 4; lanes++)
        for (const Kind kind : kinds)
            addFunctions(pieces, {kind, lanes});
    for (std::uint32_t columns = 2; columns <= 4; columns++)
        for (std::uint32_t lanes = 2; lanes <= 4; lanes++)
            for (const Kind kind : {Kind::float_, Kind::half_})
                addMatrixFunctions(pieces, {kind, lanes, columns});
    for (const auto& [name, text] : {std::pair("chosen(", chosen), std::pair("exchange(", exchange),
                                     std::pair("repeated(", repeated), std::pair("folded(", folded),
                                     std::pair("unrolled<", unrolled), std::pair("Ring<", ring)})
        pieces.push_back({name, text});
    pieces.push_back({"State ", state});
    pieces.push_back({"advanced(", advanced});
    pieces.push_back({"advance(", advance});
    for (Piece& piece : pieces)
        if (std::isalnum(piece.name.back()))
            piece.name += "(";
    return pieces;
}

} // namespace

std::string tamedText(Type type, const std::string& value) {
    return "tame_" + typeName(type) + "(" + value + ")";
}

std::string littleText(Type type, const std::string& value) {
    return "little_" + typeName(type) + "(" + value + ")";
}

std::string bitsText(Type type, const std::string& value) {
    return "bits_" + typeName(type) + "(" + value + ")";
}

std::string withPrelude(const std::string& body) {
    static const std::vector<Piece> pieces = allPieces();
    std::string text = body;
    for (auto piece = pieces.rbegin(); piece != pieces.rend(); ++piece)
        if (text.find(piece->name) != std::string::npos)
            text.insert(0, piece->text);
    return text;
}

} // namespace tarnwick::trials
