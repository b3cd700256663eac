#include "player/Channels/ChannelChoice.h"

namespace tarnwick::player {

ChannelChoice choiceOf(const std::filesystem::path& place) {
    using Kind = ChannelChoice::Kind;
    if (place.empty())
        return {};
    if (place.string().starts_with("/dev/video"))
        return {.kind = Kind::camera, .place = place};
    return {.kind = place.extension() == ".metal" ? Kind::episode : Kind::file,
            .place = std::filesystem::absolute(place)};
}

std::optional<NumberedChoice> numberedChoice(std::string_view text) {
    constexpr std::size_t head = 2; // "0="
    if (text.size() <= head || text[1] != '=' || text[0] < '0' || text[0] > '3')
        return std::nullopt;
    return NumberedChoice{static_cast<std::size_t>(text[0] - '0'), choiceOf(text.substr(head))};
}

} // namespace tarnwick::player
