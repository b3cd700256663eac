#include "tests/TarnwickMSL/RandomPrograms/Native.h"

#include "tests/TarnwickMSL/RandomPrograms/Metal.h"
#include "tests/TarnwickMSL/RandomPrograms/RandomProgram.h"

#include <charconv>

namespace tarnwick::trials {

namespace {

std::optional<std::uint64_t> number(std::string_view text) {
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

} // namespace

std::optional<Seeds> seeds(std::string_view text) {
    const std::size_t dots = text.find("..");
    const auto first = number(text.substr(0, dots));
    const auto last = dots == std::string_view::npos ? first : number(text.substr(dots + 2));
    if (!first || !last || *last < *first)
        return std::nullopt;
    return Seeds{*first, *last};
}

std::vector<std::string> bodiesOf(Seeds seeds) {
    std::vector<std::string> bodies;
    for (std::uint64_t seed = seeds.first; seed <= seeds.last; seed++)
        bodies.push_back(randomProgram(seed));
    return bodies;
}

static const char* runnerOf(Form form) {
    switch (form) {
    case Form::plain:
        return "RUN_PLAIN";
    case Form::world:
        return "RUN_WORLD";
    case Form::group:
        return "RUN_GROUPS";
    }
    return "";
}

std::string nativeSource(const std::vector<std::string>& bodies) {
    std::string text = "#include \"tests/TarnwickMSL/RandomPrograms/Shim/NativeShim.h\"\n\n"
                       "namespace tarnwick::trials::native {\n";
    std::string table;
    for (std::size_t i = 0; i < bodies.size(); i++) {
        const std::string space = "program" + std::to_string(i);
        text += "namespace " + space + " {\n" + bodies[i] + runnerOf(formOf(bodies[i])) + "\n}\n";
        table += "    " + space + "::run,\n";
    }
    return text + "void (*const runs[])(uint, uint*) = {\n" + table +
           "};\n}\n\n"
           "extern \"C\" void nativeTrial(std::uint64_t program, std::uint32_t simdWidth,\n"
           "                            std::uint32_t* results) {\n"
           "    tarnwick::trials::native::runs[program](simdWidth, results);\n}\n";
}

} // namespace tarnwick::trials
