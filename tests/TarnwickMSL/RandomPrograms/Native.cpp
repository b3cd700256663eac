#include "tests/TarnwickMSL/RandomPrograms/Native.h"

#include "tests/TarnwickMSL/RandomPrograms/Generator.h"

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

std::string nativeSource(Seeds seeds) {
    std::string text = "#include \"tests/TarnwickMSL/RandomPrograms/NativeShim.h\"\n\n"
                       "namespace tarnwick::trials::native {\n";
    std::string table;
    for (std::uint64_t seed = seeds.first; seed <= seeds.last; seed++) {
        const std::string space = "program" + std::to_string(seed);
        text += "namespace " + space + " {\n" + randomProgram(seed) + "}\n";
        table += "    " + space + "::trial,\n";
    }
    return text + "uint (*const trials[])(uint) = {\n" + table +
           "};\n}\n\n"
           "extern \"C\" std::uint32_t nativeTrial(std::uint64_t seed, std::uint32_t input) {\n"
           "    return tarnwick::trials::native::trials[seed - " +
           std::to_string(seeds.first) + "u](input);\n}\n";
}

} // namespace tarnwick::trials
