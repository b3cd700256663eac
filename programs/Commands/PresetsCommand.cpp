// tarnwick presets: the formats that movies can be exported in.
#include "TarnwickCore/Movies/ExportPreset.h"
#include "programs/Commands/Command.h"
#include "programs/Terminal/JSONText.h"
#include "programs/Terminal/TextTable.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstddef>

namespace tarnwick {
namespace {

using nlohmann::ordered_json;

// "6 Mb/s"; a dash if the codec has no bit rate.
std::string rateText(std::int64_t bitrate) {
    return bitrate == 0 ? "-" : std::to_string(bitrate / 1'000'000) + " Mb/s";
}

std::vector<std::string> rowOf(const ExportPreset& preset) {
    return {std::string(preset.id),
            std::to_string(preset.width) + "x" + std::to_string(preset.height),
            std::to_string(preset.fps) + " fps",
            rateText(preset.bitrate),
            std::string(rawValue(preset.codec)),
            std::string(preset.fileExtension()),
            std::string(preset.name)};
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
    std::vector<std::vector<std::string>> table;
    ordered_json document;
    for (const auto& [group, members] :
         {std::pair{"all", ExportPreset::all()}, {"pro", ExportPreset::pro()}})
        for (const ExportPreset& preset : members) {
            table.push_back(rowOf(preset));
            document[group].push_back(objectOf(preset));
        }
    print(arguments.has("--json") ? jsonText(document) + "\n" : textTable(table));
    return Status::done;
}

constexpr std::array<Option, 1> presetsOptions{{
    {.name = "--json", .help = "print JSON, in the groups all (everyday) and pro (high-end)"},
}};

} // namespace

const Command presetsCommand{.name = "presets",
                             .operands = "",
                             .summary = "Lists the formats of movies.",
                             .options = presetsOptions,
                             .run = presets};

} // namespace tarnwick
