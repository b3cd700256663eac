#include "TarnwickCore/Params.h"

#include "TarnwickCore/Text/Characters.h"
#include "TarnwickCore/Text/Lines.h"
#include "TarnwickCore/Text/Numbers.h"
#include "TarnwickCore/Text/Pattern.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <set>

namespace tarnwick {
namespace {

const Pattern& declarationPattern() {
    static const Pattern pattern(
        R"(^\s*//\s*@param\s+([A-Za-z_][A-Za-z0-9_]*)\s+(\S+)\s+(\S+)\s+(\S+)\s*(.*)$)");
    return pattern;
}

// A declaration, and its numbers as they are written: default, min, max.
struct WrittenParam {
    ParamDecl declaration;
    std::array<std::string_view, 3> numbers;
};

std::optional<WrittenParam> declarationOf(std::string_view line) {
    // The expression is slow compared with a search for a word, and most lines declare nothing.
    if (line.find("@param") == std::string_view::npos)
        return std::nullopt;
    const auto groups = declarationPattern().firstMatch(line);
    if (!groups)
        return std::nullopt;
    const std::optional<float> value = floatOf((*groups)[2]);
    const std::optional<float> min = floatOf((*groups)[3]);
    const std::optional<float> max = floatOf((*groups)[4]);
    if (!value || !min || !max || !(*max > *min))
        return std::nullopt;
    const float raised = *value < *min ? *min : *value;
    return WrittenParam{.declaration = {.name = std::string((*groups)[1]),
                                        .defaultValue = raised > *max ? *max : raised,
                                        .min = *min,
                                        .max = *max,
                                        .detail = std::string(trimmed((*groups)[5]))},
                        .numbers = {(*groups)[2], (*groups)[3], (*groups)[4]}};
}

// The number in the way of the one that it replaces: with a decimal point if that has one.
std::string written(float number, std::string_view before) {
    std::string text = shortest(number);
    const bool isWhole = text.find_first_not_of("-0123456789") == std::string::npos;
    if (isWhole && before.find('.') != std::string_view::npos)
        text += ".0";
    return text;
}

} // namespace

std::vector<ParamDecl> ParamParser::parse(std::string_view source) {
    return parse(linesOf(source));
}

std::vector<ParamDecl> ParamParser::parse(std::span<const std::string_view> lines) {
    std::set<std::string, std::less<>> accepted;
    std::vector<ParamDecl> declarations;
    for (const std::string_view line : lines) {
        std::optional<WrittenParam> found = declarationOf(line);
        if (found && accepted.insert(found->declaration.name).second)
            declarations.push_back(std::move(found->declaration));
    }
    return declarations;
}

std::vector<ParamEdit> paramEdits(std::string_view source, std::string_view name,
                                  const ParamNumbers& numbers) {
    const std::array<float, 3> values{numbers.defaultValue, numbers.min, numbers.max};
    const bool areFinite =
        std::ranges::all_of(values, [](float value) { return std::isfinite(value); });
    std::vector<ParamEdit> edits;
    if (!areFinite || !(numbers.max > numbers.min) || numbers.defaultValue < numbers.min ||
        numbers.defaultValue > numbers.max)
        return edits;
    for (const std::string_view line : linesOf(source)) {
        const std::optional<WrittenParam> found = declarationOf(line);
        if (!found || found->declaration.name != name)
            continue;
        for (std::size_t index = 0; index < values.size(); ++index)
            if (const std::string_view old = found->numbers[index]; floatOf(old) != values[index])
                edits.push_back({static_cast<std::size_t>(old.data() - source.data()), old.size(),
                                 written(values[index], old)});
        break;
    }
    return edits;
}

} // namespace tarnwick
