#include "tests/TarnwickMSL/Library/Cases.h"

#include "tests/TarnwickMSL/Library/HalfBits.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <limits>
#include <random>

namespace tarnwick::trials {

namespace {

constexpr double leastNormal[] = {0x1p-126, 0x1p-14};
constexpr double largest[] = {0x1.fffffep127, 65504};
constexpr int mantissaBits[] = {24, 11};

std::size_t indexOf(Element element) {
    return static_cast<std::size_t>(element);
}

std::uint32_t bitsOf(double value, Element element) {
    return element == Element::half ? halfBits(static_cast<float>(value))
                                    : std::bit_cast<std::uint32_t>(static_cast<float>(value));
}

double valueOf(std::uint32_t bits, Element element) {
    return element == Element::half ? static_cast<double>(fromHalfBits(bits))
                                    : static_cast<double>(std::bit_cast<float>(bits));
}

std::vector<double> drawn(const Inputs& inputs, std::size_t count, std::mt19937& random) {
    std::vector<double> values(count);
    std::uniform_real_distribution<double> unit(0, 1);
    for (std::size_t i = 0; i < count; i++) {
        const double t = unit(random);
        switch (inputs.shape) {
        case Inputs::Shape::unused:
            break;
        case Inputs::Shape::linear:
            values[i] = std::lerp(inputs.low, inputs.high, t);
            break;
        case Inputs::Shape::logarithmic:
        case Inputs::Shape::signedLogarithmic:
            values[i] = std::exp(std::lerp(std::log(inputs.low), std::log(inputs.high), t));
            if (inputs.shape == Inputs::Shape::signedLogarithmic && unit(random) < 0.5)
                values[i] = -values[i];
            break;
        case Inputs::Shape::whole:
            values[i] = std::round(std::lerp(inputs.low, inputs.high, t));
            break;
        case Inputs::Shape::everyHalf:
            values[i] = static_cast<double>(fromHalfBits(static_cast<std::uint32_t>(i) & 0xffff));
            break;
        }
    }
    return values;
}

std::vector<double> specialValues(Element element) {
    const double infinity = std::numeric_limits<double>::infinity();
    const double most = largest[indexOf(element)];
    const double least = leastNormal[indexOf(element)];
    return {0.0,  -0.0, infinity, -infinity, std::nan(""), most, -most, least, -least, 1.0,
            -1.0, 0.5,  -0.5,     2.0,       -2.0,         3.0,  -3.0,  2.5,   -2.5,   1.5};
}

template <class... Values> std::string print(const char* form, Values... values) {
    char text[160];
    std::snprintf(text, sizeof text, form, values...);
    return text;
}

std::string described(const Case& row, const double (&x)[3], long double wanted, double got,
                      double allowed) {
    std::string text = row.name + "(";
    for (std::size_t i = 0; i < row.arguments.size(); i++)
        text += (i > 0 ? ", " : "") + print("%.9g", x[i]);
    return text + print(") gives %.9g, wanted %.12g within %.3g", got, static_cast<double>(wanted),
                        allowed);
}

} // namespace

Bound ulps(int count) {
    return {std::to_string(count) + " ulp", static_cast<double>(count)};
}

Columns columns(const Case& row, std::size_t count) {
    std::mt19937 random(20240229);
    const bool exhaustive = row.arguments[0].shape == Inputs::Shape::everyHalf;
    count = (exhaustive ? 65536 : count) / 12 * 12 + (exhaustive ? 12 : 0);
    Columns found;
    const std::vector<double> special = specialValues(row.element);
    const std::size_t n = special.size();
    std::size_t repeat = 1;
    for (const Inputs& inputs : row.arguments) {
        std::vector<double> values = drawn(inputs, count, random);
        // Every combination of special values comes first.
        if (row.specials == Specials::all && !exhaustive)
            for (std::size_t i = 0; i < std::min(count, n * n * n); i++)
                values[i] = special[i / repeat % n];
        repeat *= n;
        std::vector<std::uint32_t>& column = found.emplace_back();
        for (double value : values)
            column.push_back(bitsOf(value, row.element));
    }
    found.resize(3, std::vector<std::uint32_t>(count));
    return found;
}

std::string kernelText(const Case& row, const std::string& name, int width) {
    const bool half = row.element == Element::half;
    const std::string element = half ? "half" : "float";
    const std::string into = half ? "as_type<half>(ushort(" : "as_type<float>((";
    const std::string lanes = width == 1 ? "" : std::to_string(width);
    std::string text = "kernel void " + name +
                       "(device const uint* a [[buffer(0)]], device const uint* b [[buffer(1)]], "
                       "device const uint* c [[buffer(2)]], device uint* out [[buffer(3)]], "
                       "uint i [[thread_position_in_grid]]) {\n    typedef " +
                       element + lanes + " T;\n    typedef int" + lanes + " I;\n    uint n = i * " +
                       std::to_string(width) + "u;\n    T ";
    const char* const variables[] = {"x = T(", "y = T(", "z = T("};
    const char* const buffers[] = {"a", "b", "c"};
    for (std::size_t v = 0; v < 3; v++) {
        text += variables[v];
        for (int lane = 0; lane < width; lane++)
            text += (lane > 0 ? ", " : "") + into + buffers[v] + "[n + " + std::to_string(lane) +
                    "u]))";
        text += v < 2 ? "), " : ");\n";
    }
    text += "    T r;\n    " + row.body + "\n";
    for (int lane = 0; lane < width; lane++) {
        const std::string value = width == 1 ? "r" : std::string("r.") + "xyzw"[lane];
        text += "    out[n + " + std::to_string(lane) +
                "u] = " + (half ? "as_type<ushort>(" : "as_type<uint>(") + value + ");\n";
    }
    return text + "}\n";
}

void Verdict::add(const Verdict& other) {
    misses += other.misses;
    if (firstMiss.empty())
        firstMiss = other.firstMiss;
    worstUlps = std::max(worstUlps, other.worstUlps);
    worstAbsolute = std::max(worstAbsolute, other.worstAbsolute);
}

Verdict judge(const Case& row, const Columns& arguments, std::span<const std::uint32_t> results) {
    Verdict verdict;
    const double least = leastNormal[indexOf(row.element)];
    const double most = largest[indexOf(row.element)];
    for (std::size_t i = 0; i < results.size(); i++) {
        const double x[3] = {valueOf(arguments[0][i], row.element),
                             valueOf(arguments[1][i], row.element),
                             valueOf(arguments[2][i], row.element)};
        // Devices may take denormals for zeros.
        if (std::ranges::any_of(x, [&](double v) { return v != 0 && std::abs(v) < least; }))
            continue;
        const long double wanted = row.reference(x[0], x[1], x[2]);
        const double got = valueOf(results[i], row.element);
        const double size = std::abs(static_cast<double>(wanted));
        const double ulp = std::ldexp(1.0, std::ilogb(std::clamp(size, least, most)) + 1 -
                                               mantissaBits[indexOf(row.element)]);
        double allowed = row.bound.ulps * ulp * 1.000001 + row.bound.absolute;
        if (row.bound.further)
            allowed += row.bound.further(x[0], x[1], static_cast<double>(wanted));
        if (size < least)
            allowed += least; // a denormal result may be flushed
        const double error = std::abs(static_cast<double>(got - wanted));
        bool holds = std::isnan(wanted) ? std::isnan(got) : error <= allowed;
        if (std::isinf(wanted) || std::isinf(got)) // of one sign, or overflow within the error
            holds = (got > 0) == (wanted > 0) && !std::isnan(got) && !std::isnan(wanted) &&
                    std::min(size, std::abs(got)) + allowed >= most;
        if (!holds && verdict.misses++ == 0)
            verdict.firstMiss = described(row, x, wanted, got, allowed);
        if (std::isfinite(got) && std::isfinite(wanted) && size >= least && size <= most) {
            verdict.worstUlps = std::max(verdict.worstUlps, error / ulp);
            verdict.worstAbsolute = std::max(verdict.worstAbsolute, error);
        }
    }
    return verdict;
}

} // namespace tarnwick::trials
