// Integer functions on the device against the same in native integers, for every integer type and
// for vectors of two to four lanes. All are exact.
#include "tests/TarnwickMSL/Library/Machine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <limits>
#include <random>

namespace tarnwick::trials {

namespace {

__extension__ typedef __int128 Wide; // holds every product and sum of two 64-bit integers

// A call on (x, y, z) of one type, with `offset` and `count` of bits, and its true value.
template <class T> struct Row {
    std::string call;
    std::uint64_t (*truth)(T x, T y, T z, unsigned offset, unsigned count);
};

#define ROW(call, ...)                                                                             \
    {                                                                                              \
        call, [](T x, T y, T z, unsigned offset, unsigned count) -> std::uint64_t {                \
            (void)x, (void)y, (void)z, (void)offset, (void)count;                                  \
            return static_cast<std::uint64_t>(__VA_ARGS__);                                        \
        }                                                                                          \
    }

template <class T> constexpr T cut(Wide value) {
    return static_cast<T>(value);
}
template <class T> constexpr T saturated(Wide value) {
    typedef std::numeric_limits<T> Limits;
    return cut<T>(std::clamp<Wide>(value, Limits::min(), Limits::max()));
}
// x * y + z, where even that many bits may be too few.
template <class T> constexpr T saturatedProduct(T x, T y, T z) {
    Wide product = 0;
    if (__builtin_mul_overflow(Wide(x), Wide(y), &product) ||
        (std::is_unsigned_v<T> && product > Wide(std::numeric_limits<T>::max())))
        return std::numeric_limits<T>::max();
    return saturated<T>(product + z);
}
template <class T> constexpr T reversed(T x) {
    T found = 0;
    for (int i = 0; i < static_cast<int>(sizeof(T) * 8); i++)
        found = static_cast<T>(found | ((static_cast<std::uint64_t>(x) >> i & 1)
                                        << (static_cast<int>(sizeof(T) * 8) - 1 - i)));
    return found;
}
template <class T> constexpr T field(std::make_unsigned_t<T> x, unsigned offset, unsigned count) {
    if (count == 0)
        return 0;
    const std::uint64_t up = static_cast<std::uint64_t>(x) << (64 - offset - count);
    return std::is_signed_v<T> ? cut<T>(static_cast<std::int64_t>(up) >> (64 - count))
                               : cut<T>(static_cast<Wide>(up >> (64 - count)));
}
template <class T> constexpr T inserted(T base, T insert, unsigned offset, unsigned count) {
    const std::uint64_t ones = (count == 0 ? 0 : ~std::uint64_t{0} >> (64 - count)) << offset;
    return static_cast<T>((static_cast<std::uint64_t>(base) & ~ones) |
                          (static_cast<std::uint64_t>(insert) << offset & ones));
}

template <class T> std::vector<Row<T>> rows() {
    typedef std::make_unsigned_t<T> U;
    constexpr int bits = sizeof(T) * 8;
    std::vector<Row<T>> found = {
        ROW("min(x, y)", std::min(x, y)),
        ROW("max(x, y)", std::max(x, y)),
        ROW("clamp(x, min(y, z), max(y, z))", std::clamp(x, std::min(y, z), std::max(y, z))),
        ROW("abs(x)", cut<T>(x < 0 ? -Wide(x) : Wide(x))),
        ROW("absdiff(x, y)", cut<U>(x < y ? Wide(y) - x : Wide(x) - y)),
        ROW("addsat(x, y)", saturated<T>(Wide(x) + y)),
        ROW("subsat(x, y)", saturated<T>(Wide(x) - y)),
        ROW("hadd(x, y)", cut<T>((Wide(x) + y) >> 1)),
        ROW("rhadd(x, y)", cut<T>((Wide(x) + y + 1) >> 1)),
        ROW("clz(x)", std::countl_zero(static_cast<U>(x))),
        ROW("ctz(x)", std::countr_zero(static_cast<U>(x))),
        ROW("popcount(x)", std::popcount(static_cast<U>(x))),
        ROW("reverse_bits(x)", reversed(x)),
        ROW("rotate(x, y)", static_cast<T>(std::rotl(static_cast<U>(x),
                                                     static_cast<int>(static_cast<U>(y) % bits)))),
        ROW("mulhi(x, y)", cut<T>((Wide(x) * y) >> bits)),
        ROW("madhi(x, y, z)", cut<T>(((Wide(x) * y) >> bits) + z)),
        ROW("madsat(x, y, z)", saturatedProduct(x, y, z)),
        ROW("min3(x, y, z)", std::min({x, y, z})),
        ROW("max3(x, y, z)", std::max({x, y, z})),
        ROW("median3(x, y, z)", std::max(std::min(x, y), std::min(std::max(x, y), z))),
        ROW("select(x, y, x < y)", x < y ? y : x),
        ROW("extract_bits(x, offset, count)", field<T>(static_cast<U>(x), offset, count)),
        ROW("insert_bits(x, y, offset, count)", inserted(x, y, offset, count)),
    };
    if constexpr (bits == 32) {
        found.push_back(ROW("mul24(x >> 8, y >> 8)", cut<T>(Wide(x >> 8) * (y >> 8))));
        found.push_back(ROW("mad24(x >> 8, y >> 8, z)", cut<T>(Wide(x >> 8) * (y >> 8) + z)));
    }
    return found;
}

constexpr std::size_t inputs = 960;

// Words of x, y and z, low and high, with the edges of every width among them.
Columns words() {
    std::mt19937_64 random(7);
    const std::uint64_t edges[] = {0,      1,          2,          127,        128,        255,
                                   0x7fff, 0x8000,     0x7fffffff, 0x80000000, 0xffffffff, ~0ull,
                                   ~1ull,  1ull << 63, ~0ull >> 1, 0xffffff80};
    Columns found(6, std::vector<std::uint32_t>(inputs));
    for (std::size_t i = 0; i < inputs; i++)
        for (std::size_t v = 0; v < 3; v++) {
            const std::uint64_t drawn = random() >> (random() % 60);
            const std::uint64_t value = random() % 3 == 0 ? edges[random() % 16] : drawn;
            found[2 * v][i] = static_cast<std::uint32_t>(value);
            found[2 * v + 1][i] = static_cast<std::uint32_t>(value >> 32);
        }
    return found;
}

// Each call once on scalars and once in lane y of vectors.
template <class T> std::string program(const std::string& type) {
    const std::string bits = std::to_string(sizeof(T) * 8);
    std::string text = "kernel void calls(";
    for (int i = 0; i < 6; i++)
        text += "device const uint* in" + std::to_string(i) + " [[buffer(" + std::to_string(i) +
                ")]], ";
    text += "device uint* out [[buffer(6)]], uint i [[thread_position_in_grid]]) {\n"
            "    typedef " +
            type +
            " T;\n    ulong found;\n"
            "    T x0 = T(ulong(in1[i]) << 32 | in0[i]), y0 = T(ulong(in3[i]) << 32 | in2[i]);\n"
            "    T z0 = T(ulong(in5[i]) << 32 | in4[i]);\n"
            "    uint offset = in2[i] % " +
            bits + "u, count = in4[i] % (" + bits + "u - offset + 1u);\n";
    const std::vector<Row<T>> calls = rows<T>();
    const char* const shapes[] = {"2(z0, ", "3(y0, ", "4(z0, "};
    const char* const ends[] = {")", ", z0)", ", x0, y0)"};
    for (std::size_t c = 0; c < calls.size(); c++)
        for (std::size_t form = 0; form < 2; form++) {
            auto variable = [&](const std::string& name) {
                const std::string vector = type + shapes[c % 3] + name + "0" + ends[c % 3];
                return "auto " + name + " = " + (form == 0 ? name + "0" : vector) + "; ";
            };
            const std::string at = std::to_string((c * 2 + form) * 2) + "u";
            text += "    { " + variable("x") + variable("y") + variable("z") + "found = ulong((" +
                    calls[c].call + ")" + (form == 0 ? "" : ".y") + "); }\n    out[i * " +
                    std::to_string(calls.size() * 4) + "u + " + at + "] = uint(found); out[i * " +
                    std::to_string(calls.size() * 4) + "u + " + at +
                    " + 1u] = uint(found >> 32);\n";
        }
    return text + "}\n";
}

template <class T> void expectExact(Machine& machine, const std::string& type) {
    const std::vector<Row<T>> calls = rows<T>();
    const Columns columns = words();
    const auto library = machine.compile(program<T>(type));
    const auto results = machine.run(*library, "calls", columns, inputs, inputs * calls.size() * 4);
    for (std::size_t c = 0; c < calls.size(); c++)
        for (std::size_t form = 0; form < 2; form++) {
            std::size_t misses = 0;
            std::string first;
            for (std::size_t i = 0; i < inputs; i++) {
                auto value = [&](std::size_t v) {
                    return static_cast<T>(static_cast<std::uint64_t>(columns[2 * v + 1][i]) << 32 |
                                          columns[2 * v][i]);
                };
                const unsigned bits = sizeof(T) * 8, offset = columns[2][i] % bits;
                const std::uint64_t wanted = calls[c].truth(value(0), value(1), value(2), offset,
                                                            columns[4][i] % (bits - offset + 1));
                const std::size_t at = (i * calls.size() + c) * 4 + form * 2;
                const std::uint64_t got =
                    static_cast<std::uint64_t>(results[at + 1]) << 32 | results[at];
                if (got != wanted && misses++ == 0)
                    first =
                        "x = " + std::to_string(value(0)) + ", y = " + std::to_string(value(1)) +
                        ", z = " + std::to_string(value(2)) + ", offset " + std::to_string(offset) +
                        ": " + std::to_string(got) + ", wanted " + std::to_string(wanted);
            }
            EXPECT_EQ(misses, 0u) << calls[c].call << " on " << type
                                  << (form == 0 ? "" : " vectors") << ": " << first;
        }
}

} // namespace

std::vector<std::string> integerCalls() {
    std::vector<std::string> calls;
    for (const Row<std::int32_t>& row : rows<std::int32_t>())
        calls.push_back(row.call);
    return calls;
}

TEST(Library, integerFunctionsAreExact) {
    const auto machine = Machine::make();
    if (!machine)
        GTEST_SKIP() << "There is no device.";
    expectExact<std::int8_t>(*machine, "char");
    expectExact<std::uint8_t>(*machine, "uchar");
    expectExact<std::int16_t>(*machine, "short");
    expectExact<std::uint16_t>(*machine, "ushort");
    expectExact<std::int32_t>(*machine, "int");
    expectExact<std::uint32_t>(*machine, "uint");
    expectExact<std::int64_t>(*machine, "long");
    expectExact<std::uint64_t>(*machine, "ulong");
}

} // namespace tarnwick::trials
