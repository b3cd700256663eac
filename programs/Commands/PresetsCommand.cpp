// tarnwick presets: the formats that movies can be exported in.
#include "TarnwickCore/Movies/ExportPreset.h"
#include "programs/Commands/Command.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstddef>

namespace tarnwick {
namespace {

using nlohmann::ordered_json;

std::string padded(std::string_view text, std::size_t width) {
    return std::string(text) + std::string(width - std::min(width, text.size()), ' ');
}

// "6 Mb/s"; a dash where the codec takes no rate.
std::string rateText(std::int64_t bitrate) {
    return bitrate == 0 ? "-" : std::to_string(bitrate / 1'000'000) + " Mb/s";
}

std::string rowOf(const ExportPreset& preset) {
    const std::string size = std::to_string(preset.width) + "x" + std::to_string(preset.height);
    return padded(preset.id, 12) + padded(size, 11) +
           padded(std::to_string(preset.fps) + " fps", 9) + padded(rateText(preset.bitrate), 10) +
           padded(rawValue(preset.codec), 12) + padded(preset.fileExtension(), 5) +
           std::string(preset.name) + "\n";
}

ordered_json objectOf(const ExportPreset& preset) {
    return {{"id", preset.id},
            {"name", preset.name},
            {"width", preset.width},
            {"height", preset.height},
            {"fps", preset.fps},
            {"bitrate", preset.bitrate},
            {"codec", rawValue(preset.codec)},
            {"fileExtension", preset.fileExtension()}};
}

Status presets(const Arguments& arguments) {
    if (!arguments.operands().empty())
        misuse(quoted(arguments.operands().front()) + " is not wanted here.");
    std::string table;
    ordered_json document;
    for (const auto& [group, members] :
         {std::pair{"all", ExportPreset::all()}, {"pro", ExportPreset::pro()}})
        for (const ExportPreset& preset : members) {
            table += rowOf(preset);
            document[group].push_back(objectOf(preset));
        }
    print(arguments.has("--json") ? document.dump(2) + "\n" : table);
    return Status::done;
}

constexpr std::array<Option, 1> presetsOptions{{
    {"--json", "", "as JSON, in the groups all (everyday) and pro (high-end)"},
}};

} // namespace

const Command presetsCommand{.name = "presets",
                             .operands = "",
                             .summary = "Lists the formats that movies can be exported in.",
                             .options = presetsOptions,
                             .run = presets};

} // namespace tarnwick
