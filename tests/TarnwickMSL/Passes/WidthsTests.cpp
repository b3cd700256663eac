// Integers of 8, 16 and 64 bits in words, and halves in floats, against native code and exact
// arithmetic.
#include "TarnwickMSL/Translation/Passes.h"
#include "tests/TarnwickMSL/Passes/Running.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace tarnwick::msl::test {
namespace {

using Words = std::vector<std::uint32_t>;

// T is the type, B its bits. Divisors and distances are valid: %d and %s.
struct Row {
    const char* result; // T, i1, half or float
    const char* code;   // of %r
};
constexpr std::array integerRows{
    Row{"T", "%r = add T %a, %b"},
    Row{"T", "%r = sub T %a, %b"},
    Row{"T", "%r = mul T %a, %b"},
    Row{"T", "%r = udiv T %a, %d"},
    Row{"T", "%r = urem T %a, %d"},
    Row{"T", "%r = sdiv T %a, %d"},
    Row{"T", "%r = srem T %a, %d"},
    Row{"T", "%r = shl T %a, %s"},
    Row{"T", "%r = lshr T %a, %s"},
    Row{"T", "%r = ashr T %a, %s"},
    Row{"T", "%r = and T %a, %b"},
    Row{"T", "%r = or T %a, %b"},
    Row{"T", "%r = xor T %a, %b"},
    Row{"i1", "%r = icmp eq T %a, %b"},
    Row{"i1", "%r = icmp ne T %a, %b"},
    Row{"i1", "%r = icmp ult T %a, %b"},
    Row{"i1", "%r = icmp ule T %a, %b"},
    Row{"i1", "%r = icmp ugt T %a, %b"},
    Row{"i1", "%r = icmp uge T %a, %b"},
    Row{"i1", "%r = icmp slt T %a, %b"},
    Row{"i1", "%r = icmp sle T %a, %b"},
    Row{"i1", "%r = icmp sgt T %a, %b"},
    Row{"i1", "%r = icmp sge T %a, %b"},
    Row{"T", "%r = call T @llvm.abs.T(T %a, i1 false)"},
    Row{"T", "%r = call T @llvm.ctpop.T(T %a)"},
    Row{"T", "%r = call T @llvm.ctlz.T(T %a, i1 false)"},
    Row{"T", "%r = call T @llvm.cttz.T(T %a, i1 false)"},
    Row{"T", "%r = call T @llvm.bitreverse.T(T %a)"},
    Row{"T", "%r = call T @llvm.smin.T(T %a, T %b)"},
    Row{"T", "%r = call T @llvm.smax.T(T %a, T %b)"},
    Row{"T", "%r = call T @llvm.umin.T(T %a, T %b)"},
    Row{"T", "%r = call T @llvm.umax.T(T %a, T %b)"},
    Row{"T", "%r = call T @llvm.fshl.T(T %a, T %d, T %b)"},
    Row{"T", "%r = call T @llvm.fshr.T(T %a, T %d, T %b)"},
    Row{"T", "%r = call T @llvm.uadd.sat.T(T %a, T %b)"},
    Row{"T", "%r = call T @llvm.usub.sat.T(T %a, T %b)"},
    Row{"T", "%r = call T @llvm.sadd.sat.T(T %a, T %b)"},
    Row{"T", "%r = call T @llvm.ssub.sat.T(T %a, T %b)"},
    Row{"T", "%r = call T @llvm.fptoui.sat.T.f32(float %f)"},
    Row{"T", "%r = call T @llvm.fptosi.sat.T.f32(float %f)"},
    Row{"float", "%r = uitofp T %a to float"},
    Row{"float", "%r = sitofp T %a to float"},
    Row{"T", "%r = select i1 %isNegative, T %a, T %b"},
    Row{"T", "%r = sext i1 %isNegative to T"},
    Row{"T", "%v = insertelement <2 x T> <T 3, T 4>, T %a, i32 1\n  %x = mul <2 x T> %v, %v\n"
             "  %r = extractelement <2 x T> %x, i32 1"},
    Row{"T", "%r = udiv T %a, 10"},
    Row{"T", "%r = srem T %a, -7"},
    Row{"T", "%r = mul T 100, %a"},
    Row{"i1", "%r = icmp ult T %a, 100"},
};

// Of @in: %a is of the words 0 and 1, %b of 2 and 3, %f of 4.
constexpr const char* narrowOperands = R"(
  %a = trunc i32 %w0 to T
  %b = trunc i32 %w2 to T)";
constexpr const char* wideOperands = R"(
  %a0 = zext i32 %w0 to i64
  %a1 = zext i32 %w1 to i64
  %a2 = shl i64 %a1, 32
  %a = or i64 %a0, %a2
  %b0 = zext i32 %w2 to i64
  %b1 = zext i32 %w3 to i64
  %b2 = shl i64 %b1, 32
  %b = or i64 %b0, %b2)";
constexpr const char* derivedOperands = R"(
  %isZero = icmp eq T %b, 0
  %isOnes = icmp eq T %b, -1
  %isBad = or i1 %isZero, %isOnes
  %d = select i1 %isBad, T 7, T %b
  %s = and T %b, M
  %f = bitcast i32 %w4 to float
  %isNegative = icmp slt T %a, 0
)";
constexpr const char* halfOperands = R"(
  %b0 = trunc i32 %w0 to i16
  %b1 = trunc i32 %w1 to i16
  %b2 = trunc i32 %w2 to i16
  %a = bitcast i16 %b0 to half
  %b = bitcast i16 %b1 to half
  %c = bitcast i16 %b2 to half
  %f = bitcast i32 %w4 to float
)";

struct HalfRow {
    const char* code; // of %r, from the halves %a, %b and %c and the float %f
    double (*exact)(double a, double b, double c, double f);
};
constexpr std::array halfRows{
    HalfRow{"%r = fadd half %a, %b", [](double a, double b, double, double) { return a + b; }},
    HalfRow{"%r = fsub half %a, %b", [](double a, double b, double, double) { return a - b; }},
    HalfRow{"%r = fmul half %a, %b", [](double a, double b, double, double) { return a * b; }},
    HalfRow{"%r = fdiv half %a, %b", [](double a, double b, double, double) { return a / b; }},
    HalfRow{"%r = call half @llvm.sqrt.f16(half %a)",
            [](double a, double, double, double) { return std::sqrt(a); }},
    HalfRow{"%r = call half @llvm.fma.f16(half %a, half %b, half %c)",
            [](double a, double b, double c, double) { return std::fma(a, b, c); }},
    HalfRow{"%r = call half @llvm.floor.f16(half %a)",
            [](double a, double, double, double) { return std::floor(a); }},
    HalfRow{"%r = fneg half %a", [](double a, double, double, double) { return -a; }},
    HalfRow{"%r = fptrunc float %f to half", [](double, double, double, double f) { return f; }},
    HalfRow{
        "%x = call i32 @llvm.fptosi.sat.i32.f16(half %c)\n  %r = sitofp i32 %x to half",
        [](double, double, double c, double) { return std::isnan(c) ? 0 : std::trunc(c) + 0.0; }},
    HalfRow{"%x = fcmp olt half %a, %b\n  %r = select i1 %x, half %a, half 1.0",
            [](double a, double b, double, double) { return a < b ? a : 1; }},
};

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != text.npos; at += to.size())
        text.replace(at, from.size(), to);
    return text;
}

// Stores %r as two words of @out.
std::string stored(const std::string& type, std::size_t index) {
    const auto word = [&](const char* value, std::size_t at) {
        return std::string("  store i32 ") + value + ", ptr getelementptr (i8, ptr @out, i32 " +
               std::to_string(4 * at) + ")\n";
    };
    const std::string first = word("%x0", 2 * index);
    if (type == "i64")
        return "  %x0 = trunc i64 %r to i32\n  %x1 = lshr i64 %r, 32\n  %x2 = trunc i64 %x1 to "
               "i32\n" +
               first + word("%x2", 2 * index + 1);
    if (type == "float")
        return "  %x0 = bitcast float %r to i32\n" + first;
    if (type == "half")
        return "  %x1 = bitcast half %r to i16\n  %x0 = zext i16 %x1 to i32\n" + first;
    return "  %x0 = zext " + type + " %r to i32\n" + first;
}

// Names of a row get its number.
std::string rowCode(const std::string& code, const std::string& type, std::size_t index) {
    std::string text = "  " + code + "\n" + stored(type, index);
    for (const char* name : {"%r", "%v", "%x"})
        text = replaced(text, name, "%n" + std::to_string(index) + (name + 1));
    return text;
}

constexpr std::size_t inputs = 5;

std::string mainWith(const std::string& code, std::size_t rows) {
    std::string text = "@in = external global [5 x i32]\n@out = external global [" +
                       std::to_string(2 * rows) + " x i32]\ndefine void @main() {\n";
    for (std::size_t index = 0; index < inputs; index++)
        text += "  %w" + std::to_string(index) +
                " = load i32, ptr getelementptr (i8, ptr @in, i32 " + std::to_string(4 * index) +
                ")\n";
    return text + code + "  ret void\n}\n";
}

std::string integerProgram(unsigned bits) {
    std::string code = std::string(bits == 64 ? wideOperands : narrowOperands) + derivedOperands;
    const std::string type = "i" + std::to_string(bits);
    for (std::size_t index = 0; index < integerRows.size(); index++)
        code +=
            rowCode(integerRows[index].code, replaced(integerRows[index].result, "T", type), index);
    code = mainWith(code, integerRows.size());
    code = replaced(replaced(code, "T ", type + " "), "T>", type + ">");
    code = replaced(replaced(code, ".T", "." + type), "to T", "to " + type);
    return replaced(code, ", M", ", " + std::to_string(bits - 1));
}

// Machine code of a main.
class Main {
  public:
    Main(const std::string& text, std::size_t rows)
        : native_(*parse(text, context_)), outputs_(2 * rows) {}

    Words operator()(const Words& in) const {
        std::ranges::copy(in, static_cast<std::uint32_t*>(native_.address("in")));
        auto* out = static_cast<std::uint32_t*>(native_.address("out"));
        std::fill_n(out, outputs_, 0u);
        reinterpret_cast<void (*)()>(native_.address("main"))();
        return {out, out + outputs_};
    }

  private:
    llvm::LLVMContext context_;
    Native native_;
    std::size_t outputs_;
};

class RandomWords {
  public:
    std::uint32_t word() {
        constexpr std::array<std::uint32_t, 12> special{
            0, 1, 2, 3, 0x7f, 0x80, 0xff, 0x7fff, 0x8000, 0xffff, 0x7fffffff, 0x80000000};
        const std::uint32_t bits = next();
        switch (next() % 4) {
        case 0:
            return special[bits % special.size()] ^ (next() % 2 ? 0 : ~0u);
        case 1:
            return bits >> next() % 32;
        default:
            return bits;
        }
    }
    std::uint32_t real() { // mostly from 2^-32 to 2^67
        const std::uint32_t bits = next();
        return next() % 16 == 0 ? bits : (bits & 0x807fffff) | (95 + next() % 100) << 23;
    }
    Words input() { return {word(), word(), word(), word(), real()}; }

  private:
    std::uint32_t next() { return static_cast<std::uint32_t>(engine_()); }
    std::mt19937 engine_{7}; // NOLINT: the same in each run
};

void expectEqual(const Main& original, const Main& lowered) {
    RandomWords words;
    for (int trial = 0; trial < 5000; trial++) {
        const Words in = words.input();
        const Words expected = original(in), given = lowered(in);
        for (std::size_t at = 0; at < expected.size(); at++)
            ASSERT_EQ(given[at], expected[at])
                << integerRows[at / 2].code << " of " << std::hex << testing::PrintToString(in);
    }
}

// The value of a half's bits (IEEE 754-2019, 3.4).
double valueOf(std::uint32_t bits) {
    const int exponent = bits >> 10 & 31, fraction = bits & 1023;
    double size = exponent ? std::ldexp(1024 + fraction, exponent - 25) : std::ldexp(fraction, -24);
    if (exponent == 31)
        size = fraction ? std::numeric_limits<double>::quiet_NaN()
                        : std::numeric_limits<double>::infinity();
    return bits & 0x8000 ? -size : size;
}

// The nearest half, ties to even.
double nearestHalf(double exact) {
    if (exact == 0 || !std::isfinite(exact))
        return exact;
    int exponent = 0;
    std::frexp(exact, &exponent);
    const double unit = std::ldexp(1, std::max(exponent, -13) - 11);
    const double nearest = std::nearbyint(exact / unit) * unit;
    return std::abs(nearest) > 65504
               ? std::copysign(std::numeric_limits<double>::infinity(), nearest)
               : nearest;
}

bool isSame(double a, double b) {
    return (std::isnan(a) && std::isnan(b)) || (a == b && std::signbit(a) == std::signbit(b));
}

} // namespace

TEST(Widths, giveIntegersTheNumbersOfNativeCode) {
    const std::array<std::pair<unsigned, const char*>, 5> cases{
        {{8, "int8=1"},
         {8, "int8=1 int16=1 int64=1 half=1"},
         {16, "int16=1"},
         {64, "int64=1"},
         {64, "int8=1 int16=1 int64=1 half=1"}}};
    for (const auto& [bits, lacks] : cases) {
        const std::string program = integerProgram(bits);
        SCOPED_TRACE(lacks);
        expectEqual(Main(program, integerRows.size()),
                    Main(runStep("word-values", std::string("; lacks ") + lacks + "\n" + program),
                         integerRows.size()));
    }
}

// The operands %a are all halves.
TEST(Widths, giveHalvesTheNearestOfTheExactNumber) {
    std::string code = halfOperands;
    for (std::size_t index = 0; index < halfRows.size(); index++)
        code += rowCode(halfRows[index].code, "half", index);
    const std::string program = mainWith(code, halfRows.size());
    const Main lowered(runStep("word-values", "; lacks int16=1 half=1\n" + program),
                       halfRows.size());
    RandomWords words;
    for (std::uint32_t bits = 0; bits < 0x10000; bits++) {
        Words in = words.input();
        in[0] = bits;
        const Words given = lowered(in);
        for (std::size_t row = 0; row < halfRows.size(); row++) {
            const double exact =
                halfRows[row].exact(valueOf(in[0]), valueOf(in[1]), valueOf(in[2]),
                                    static_cast<double>(std::bit_cast<float>(in[4])));
            ASSERT_TRUE(isSame(valueOf(given[2 * row]), nearestHalf(exact)))
                << halfRows[row].code << " of " << std::hex << testing::PrintToString(in) << " is "
                << valueOf(given[2 * row]) << ", not " << nearestHalf(exact);
        }
    }
}

} // namespace tarnwick::msl::test
