#include "TarnwickCore/Params.h"

#include "TarnwickCore/Text/Characters.h"
#include "TarnwickCore/Text/Lines.h"
#include "TarnwickCore/Text/Numbers.h"
#include "TarnwickCore/Text/Pattern.h"

#include <optional>
#include <set>

namespace tarnwick {
namespace {

const Pattern& declarationPattern() {
    static const Pattern pattern(
        R"(^\s*//\s*@param\s+([A-Za-z_][A-Za-z0-9_]*)\s+(\S+)\s+(\S+)\s+(\S+)\s*(.*)$)");
    return pattern;
}

std::optional<ParamDecl> declarationOf(std::string_view line) {
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
    return ParamDecl{.name = std::string((*groups)[1]),
                     .defaultValue = raised > *max ? *max : raised,
                     .min = *min,
                     .max = *max,
                     .detail = std::string(trimmed((*groups)[5]))};
}

} // namespace

std::vector<ParamDecl> ParamParser::parse(std::string_view source) {
    return parse(linesOf(source));
}

std::vector<ParamDecl> ParamParser::parse(std::span<const std::string_view> lines) {
    std::set<std::string, std::less<>> accepted;
    std::vector<ParamDecl> declarations;
    for (const std::string_view line : lines) {
        std::optional<ParamDecl> declaration = declarationOf(line);
        if (declaration && accepted.insert(declaration->name).second)
            declarations.push_back(std::move(*declaration));
    }
    return declarations;
}

} // namespace tarnwick
