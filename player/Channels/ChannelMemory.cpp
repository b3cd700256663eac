#include "player/Channels/ChannelMemory.h"

#include "TarnwickBase/WholeFile.h"
#include "TarnwickCore/Text/OutsideJSON.h"
#include "TarnwickPlatform/Bundle/TextFile.h"

#include <algorithm>
#include <cstdlib>

namespace tarnwick::player {
namespace {

// [{"episode": PATH, "channels": [PATH, null, ...]}, ...], the newest first.
nlohmann::json rowsOf(const std::filesystem::path& file) {
    const auto bytes = fileBytes(file);
    const auto json = bytes ? objectOf(*bytes) : std::nullopt;
    if (!json)
        return nlohmann::json::array();
    const nlohmann::json& rows = memberOf(*json, "episodes");
    return rows.is_array() ? rows : nlohmann::json::array();
}

bool isOf(const nlohmann::json& row, const std::filesystem::path& episode) {
    return row.is_object() && textOf(row, "episode") == episode.string();
}

nlohmann::json rowOf(const std::filesystem::path& episode, const ChannelChoices& choices) {
    nlohmann::json channels = nlohmann::json::array();
    for (const ChannelChoice& choice : choices)
        channels.push_back(choice.place.empty() ? nlohmann::json()
                                                : nlohmann::json(choice.place.string()));
    return {{"episode", episode.string()}, {"channels", channels}};
}

} // namespace

std::filesystem::path channelsFile() {
    const char* state = std::getenv("XDG_STATE_HOME");
    const char* home = std::getenv("HOME");
    const std::filesystem::path base =
        state != nullptr && *state == '/'
            ? std::filesystem::path(state)
            : std::filesystem::path(home == nullptr ? "/tmp" : home) / ".local" / "state";
    return base / "tarnwick" / "channels.json";
}

ChannelChoices rememberedChannels(const std::filesystem::path& file,
                                  const std::filesystem::path& episode) {
    ChannelChoices choices;
    for (const nlohmann::json& row : rowsOf(file)) {
        if (!isOf(row, episode))
            continue;
        const nlohmann::json& channels = memberOf(row, "channels");
        for (std::size_t index = 0;
             channels.is_array() && index < std::min(channels.size(), choices.size()); ++index)
            if (channels[index].is_string())
                choices[index] = choiceOf(channels[index].get<std::string>());
        break;
    }
    return choices;
}

void rememberChannels(const std::filesystem::path& file, const std::filesystem::path& episode,
                      const ChannelChoices& choices) {
    nlohmann::json rows = nlohmann::json::array();
    if (choices != ChannelChoices{})
        rows.push_back(rowOf(episode, choices));
    for (const nlohmann::json& row : rowsOf(file))
        if (row.is_object() && !isOf(row, episode) && rows.size() < mostRemembered)
            rows.push_back(row);
    std::error_code error;
    std::filesystem::create_directories(file.parent_path(), error);
    try {
        writeWholeFile(file, nlohmann::json{{"episodes", rows}}.dump(
                                 1, ' ', false, nlohmann::json::error_handler_t::replace));
    } catch (const WholeFileError&) { // the channels of this run are not affected
    }
}

} // namespace tarnwick::player
