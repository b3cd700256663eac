#include "tests/TarnwickMSL/Accuracy/Differences.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdio>
#include <stdexcept>

namespace tarnwick::trials {

namespace {

struct Example {
    const char* call;
    const char* function;
    std::array<float, 2> arguments;
};

// Arguments for which the results differ on the packaged CPU driver.
// clang-format off
constexpr Example examples[] = {
    {"sin(2.3247931)", "sin", {2.3247931F}}, {"cos(2.3875959)", "cos", {2.3875959F}}, {"tan(2.3875959)", "tan", {2.3875959F}},
    {"sinpi(1)", "sinpi", {1}}, {"cospi(0.5)", "cospi", {0.5F}}, {"tanpi(0.25)", "tanpi", {0.25F}},
    {"exp(80)", "exp", {80}}, {"exp2(-0.0059325998)", "exp2", {-0.0059325998F}}, {"exp10(30)", "exp10", {30}},
    {"log(1.0001)", "log", {1.0001F}}, {"log2(1.9870862)", "log2", {1.9870862F}}, {"log10(1.9709755)", "log10", {1.9709755F}},
    {"pow(-2, 3)", "pow", {-2, 3}}, {"pow(1.5, 100)", "pow", {1.5F, 100}}, {"powr(1.5, 100)", "powr", {1.5F, 100}},
    {"sinh(0.0001)", "sinh", {0.0001F}}, {"cosh(50)", "cosh", {50}}, {"tanh(0.0001)", "tanh", {0.0001F}},
    {"asinh(0.0001)", "asinh", {0.0001F}}, {"acosh(1.0001)", "acosh", {1.0001F}}, {"atanh(0.0001)", "atanh", {0.0001F}},
    {"fmod(1e10, 3)", "fmod", {1e10F, 3}}, {"rsqrt(7)", "rsqrt", {7}},
};
// clang-format on

const Case& caseOf(const std::vector<Case>& cases, const std::string& name) {
    const auto found = std::ranges::find_if(cases, [&](const Case& row) {
        return row.name == name || row.name.starts_with(name + ",");
    });
    if (found == cases.end())
        throw std::runtime_error("There is no case for " + name + ".");
    return *found;
}

std::string callText(const Example& example, const std::string& space, std::size_t index) {
    const auto argument = [&](std::size_t i) {
        return "arguments[" + std::to_string(2 * index + i) + "]";
    };
    const bool isOfTwo = std::string(example.call).find(',') != std::string::npos;
    return space + example.function + "(" + argument(0) + (isOfTwo ? ", " + argument(1) : "") + ")";
}

std::string kernelOfAll() {
    std::string text = "kernel void differ(constant float* arguments [[buffer(0)]], "
                       "device float* out [[buffer(1)]]) {\n";
    for (std::size_t i = 0; i < std::size(examples); i++)
        for (const bool isFast : {false, true})
            text += "    out[" + std::to_string(2 * i + (isFast ? 1 : 0)) +
                    "] = " + callText(examples[i], isFast ? "fast::" : "precise::", i) + ";\n";
    return text + "}\n";
}

} // namespace

std::vector<Difference> differences(Machine& machine) {
    const auto library = machine.compile(kernelOfAll());
    std::vector<std::uint32_t> arguments;
    for (const Example& example : examples)
        for (const float argument : example.arguments)
            arguments.push_back(std::bit_cast<std::uint32_t>(argument));
    const auto bits = machine.run(*library, "differ", {arguments}, 1, 2 * std::size(examples));
    const auto precise = preciseCases(), fast = fastCases();
    std::vector<Difference> found;
    for (std::size_t i = 0; i < std::size(examples); i++) {
        const Example& example = examples[i];
        const Case& row = caseOf(precise, std::string("precise::") + example.function);
        found.push_back({example.call, row, caseOf(fast, example.function),
                         std::bit_cast<float>(bits[2 * i]), std::bit_cast<float>(bits[2 * i + 1]),
                         static_cast<double>(
                             row.reference(static_cast<long double>(example.arguments[0]),
                                           static_cast<long double>(example.arguments[1]), 0))});
    }
    return found;
}

std::string differencesTable(const std::vector<Difference>& differences) {
    std::string table =
        "| call | exact | precise:: | fast:: | granted in precise math | granted in "
        "fast math |\n|---|---|---|---|---|---|\n";
    for (const Difference& row : differences) {
        std::array<char, 512> text{};
        std::snprintf(text.data(), text.size(), "| %s | %.9g | %.9g | %.9g | %s | %s |\n",
                      row.call.c_str(), row.exact, static_cast<double>(row.inPrecise),
                      static_cast<double>(row.inFast), row.precise.bound.text.c_str(),
                      row.fast.bound.text.c_str());
        table += text.data();
    }
    return table;
}

} // namespace tarnwick::trials
