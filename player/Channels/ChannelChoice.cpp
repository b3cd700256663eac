#include "player/Channels/ChannelChoice.h"

#include "TarnwickCore/CommandLine/ChannelWord.h"

namespace tarnwick::player {

ChannelChoice choiceOf(const std::filesystem::path& place) {
    using Kind = ChannelChoice::Kind;
    if (place.empty())
        return {};
    switch (channelKindOf(place)) {
    case ChannelKind::camera:
        return {.kind = Kind::camera, .place = place};
    case ChannelKind::episode:
        return {.kind = Kind::episode, .place = std::filesystem::absolute(place)};
    case ChannelKind::file:
        break;
    }
    return {.kind = Kind::file, .place = std::filesystem::absolute(place)};
}

std::optional<NumberedChoice> numberedChoice(std::string_view text) {
    const auto word = channelWord(text);
    if (!word || word->address.size() != 1)
        return std::nullopt;
    return NumberedChoice{word->address.front(), choiceOf(word->place)};
}

} // namespace tarnwick::player
