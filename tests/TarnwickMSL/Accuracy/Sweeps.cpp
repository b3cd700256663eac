#include "tests/TarnwickMSL/Accuracy/Sweeps.h"

#include <algorithm>
#include <stdexcept>

namespace tarnwick::trials {

namespace {

constexpr float all = std::numeric_limits<float>::infinity();
constexpr float most = std::numeric_limits<float>::max(), least = 0x1p-126F;
constexpr float pi = 0x1.921fb4p+1F; // rounded down

struct Row {
    const char* name; // of a case
    const char* truth;
    float low = -all, high = all; // -all to all: with infinities and NaNs
};

// clang-format off
constexpr Row rows[] = {
    {"precise::sin", "sin"}, {"precise::sincos, sine", "sin"}, {"sin, [-π, π]", "sin", -pi, pi}, {"sincos, sine, [-π, π]", "sin", -pi, pi},
    {"precise::cos", "cos"}, {"precise::sincos, cosine", "cos"}, {"cos, [-π, π]", "cos", -pi, pi}, {"sincos, cosine, [-π, π]", "cos", -pi, pi},
    {"precise::tan", "tan"}, {"tan, [-1.5, 1.5]", "tan", -1.5F, 1.5F},
    {"precise::sinpi", "sinpi"}, {"sinpi, [-1, 1]", "sinpi", -1, 1},
    {"precise::cospi", "cospi"}, {"cospi, [-1, 1]", "cospi", -1, 1},
    {"precise::tanpi", "tanpi"}, {"tanpi, [-0.45, 0.45]", "tanpi", -0.45F, 0.45F},
    {"precise::asin", "asin"}, {"asin", "asin", -1, 1},
    {"precise::acos", "acos"}, {"acos", "acos", -1, 1},
    {"precise::atan", "atan"}, {"atan", "atan", -most, most},
    {"precise::sinh", "sinh"}, {"sinh", "sinh", -88, 88},
    {"precise::cosh", "cosh"}, {"cosh", "cosh", -88, 88},
    {"precise::tanh", "tanh"}, {"tanh", "tanh", -40, 40},
    {"precise::asinh", "asinh"}, {"asinh", "asinh", -1e15F, 1e15F},
    {"precise::acosh", "acosh"}, {"acosh, [1.1, ∞)", "acosh", 1.1F, 1e15F},
    {"precise::atanh", "atanh"}, {"atanh, [-0.95, 0.95]", "atanh", -0.95F, 0.95F},
    {"precise::exp", "exp"}, {"exp", "exp", -87, 88},
    {"precise::exp2", "exp2"}, {"exp2", "exp2", -125.9F, 127.9F},
    {"precise::exp10", "exp10"}, {"exp10", "exp10", -37.8F, 38.4F},
    {"precise::log", "log"}, {"log, [½, 2]", "log", 0.5F, 2}, {"log, above 2", "log", 0x1.000002p1F, most}, {"log, below ½", "log", least, 0x1.fffffep-2F},
    {"precise::log2", "log2"}, {"log2, [½, 2]", "log2", 0.5F, 2}, {"log2, above 2", "log2", 0x1.000002p1F, most}, {"log2, below ½", "log2", least, 0x1.fffffep-2F},
    {"precise::log10", "log10"}, {"log10, [½, 2]", "log10", 0.5F, 2}, {"log10, above 2", "log10", 0x1.000002p1F, most}, {"log10, below ½", "log10", least, 0x1.fffffep-2F},
    {"precise::sqrt", "sqrt"}, {"sqrt", "sqrt", least, most},
    {"precise::rsqrt", "rsqrt"}, {"rsqrt", "rsqrt", least, most},
    {"1 / x", "reciprocal", -0x1p126F, 0x1p126F},
    {"precise::fract", "fract"}, {"fract", "fract", -most, most},
    {"precise::modf, fraction", "modfFraction"}, {"modf, fraction", "modfFraction", -most, most},
    {"precise::modf, whole", "trunc"}, {"modf, whole", "trunc", -most, most}, {"trunc", "trunc"},
    {"fabs", "fabs"}, {"abs", "fabs"}, {"floor", "floor"}, {"ceil", "ceil"}, {"rint", "rint"}, {"round", "round"},
    {"saturate", "saturate"}, {"sign", "sign"},
    {"frexp, mantissa", "mantissa"}, {"frexp, exponent", "exponent", -most, most}, {"ilogb", "ilogb", -most, most},
    {"isnan", "zero"}, {"isinf", "zero"}, {"isfinite", "one"}, {"isnormal", "isnormal"}, {"signbit", "signbit"},
};
// clang-format on

} // namespace

std::vector<Sweep> sweeps() {
    std::vector<Case> cases;
    for (auto&& some : {preciseCases(), fastCases(), commonCases(), geometricCases()})
        cases.insert(cases.end(), some.begin(), some.end());
    std::vector<Sweep> found;
    for (const Row& row : rows) {
        const auto at = std::ranges::find(cases, row.name, &Case::name);
        const Truth truth = truthOf(row.truth);
        if (at == cases.end() || truth == nullptr)
            throw std::logic_error(std::string("There is no case or truth for ") + row.name + ".");
        found.push_back({row.name, *at, truth, row.low, row.high, row.high == all});
    }
    return found;
}

} // namespace tarnwick::trials
