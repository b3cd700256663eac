// tarnwick meta: the data of an episode.
#include "TarnwickCore/Text/Numbers.h"
#include "TarnwickCore/Text/TerminalText.h"
#include "programs/Commands/Command.h"
#include "programs/Episode/EpisodeFile.h"
#include "programs/Terminal/JSONText.h"
#include "programs/Terminal/TextTable.h"

#include <nlohmann/json.hpp>

#include <array>

namespace tarnwick {
namespace {

using nlohmann::ordered_json;

std::string listed(const std::vector<std::int64_t>& variations) {
    std::string list;
    for (const std::int64_t index : variations)
        list += (list.empty() ? "" : ", ") + std::to_string(index);
    return list;
}

std::string row(std::string_view name, const std::string& value) {
    constexpr std::size_t width = 12;
    return value.empty() ? ""
                         : std::string(name) + std::string(width - name.size(), ' ') +
                               terminalText(value) + "\n";
}

std::string kindText(const Episode& episode) {
    std::string text(rawValue(episode.kind));
    if (episode.shader.isParticles())
        text += ", " + std::to_string(episode.shader.particles);
    if (episode.shader.isMesh())
        text += ", " + std::to_string(episode.shader.grid) + " x " +
                std::to_string(episode.shader.grid) + " cells";
    if (episode.shader.usesInputs)
        text += ", with Inputs";
    if (episode.shader.hasSound)
        text += ", with sound";
    return text;
}

std::string paramsText(const std::vector<ParamDecl>& params) {
    std::vector<std::vector<std::string>> rows{{"parameter", "default", "min", "max", ""}};
    for (const ParamDecl& param : params)
        rows.push_back({param.name, shortest(param.defaultValue), shortest(param.min),
                        shortest(param.max), terminalText(param.detail)});
    return textTable(rows);
}

std::string metaText(const Episode& episode) {
    const EpisodeMeta& meta = episode.meta;
    std::string variations = listed(meta.variations);
    if (!variations.empty())
        variations += "; " + shortest(meta.variationLength) + " s each";
    std::string closing = meta.finalTitle;
    if (!meta.finalSummary.empty())
        closing += " | " + meta.finalSummary;
    std::string text = row("episode", std::to_string(meta.number) + " " + meta.title) +
                       row("kind", kindText(episode)) +
                       row("length", shortest(meta.length) + " s") + row("variations", variations) +
                       row("still", shortest(meta.still) + " s") + row("teaches", meta.teaches) +
                       row("category", meta.category) + row("tags", meta.tags) +
                       row("final", closing);
    if (!episode.shader.params.empty())
        text += "\n" + paramsText(episode.shader.params);
    return text;
}

ordered_json paramsJSON(const std::vector<ParamDecl>& params) {
    ordered_json list = ordered_json::array();
    for (const ParamDecl& param : params)
        list.push_back({{"name", param.name},
                        {"default", asWritten(param.defaultValue)},
                        {"min", asWritten(param.min)},
                        {"max", asWritten(param.max)},
                        {"detail", param.detail}});
    return list;
}

std::string metaJSON(const Episode& episode) {
    const EpisodeMeta& meta = episode.meta;
    const ordered_json document{{"episode", episode.path},
                                {"number", meta.number},
                                {"title", meta.title},
                                {"kind", rawValue(episode.kind)},
                                {"particles", episode.shader.particles},
                                {"grid", episode.shader.grid},
                                {"inputs", episode.shader.usesInputs},
                                {"sound", episode.shader.hasSound},
                                {"length", meta.length},
                                {"variations", meta.variations},
                                {"variationLength", meta.variationLength},
                                {"still", meta.still},
                                {"teaches", meta.teaches},
                                {"category", meta.category},
                                {"tags", meta.tags},
                                {"finalTitle", meta.finalTitle},
                                {"finalSummary", meta.finalSummary},
                                {"params", paramsJSON(episode.shader.params)}};
    return jsonText(document) + "\n";
}

Status meta(const Arguments& arguments) {
    const Episode episode = episodeAt(arguments.operand());
    print(arguments.has("--json") ? metaJSON(episode) : metaText(episode));
    return Status::done;
}

constexpr std::array<Option, 1> metaOptions{{
    {.name = "--json", .help = "print JSON; times are in seconds"},
}};

} // namespace

const Command metaCommand{.name = "meta",
                          .operands = "EPISODE",
                          .summary =
                              "Prints the kind, title, lengths and parameters of the episode.",
                          .options = metaOptions,
                          .run = meta};

} // namespace tarnwick
