#include "TarnwickCore/CommandLine/ChannelWord.h"

namespace tarnwick {

ChannelKind channelKindOf(const std::filesystem::path& place) {
    if (place.string().starts_with("/dev/video"))
        return ChannelKind::camera;
    return place.extension() == ".metal" ? ChannelKind::episode : ChannelKind::file;
}

std::optional<ChannelWord> channelWord(std::string_view text) {
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos || equals % 2 == 0 || equals + 1 == text.size())
        return std::nullopt;
    ChannelWord word{.address = {}, .place = text.substr(equals + 1)};
    for (std::size_t at = 0; at < equals; at += 2) {
        const bool isLast = at + 1 == equals;
        if (text[at] < '0' || text[at] > '3' || (!isLast && text[at + 1] != '.'))
            return std::nullopt;
        word.address.push_back(static_cast<std::size_t>(text[at] - '0'));
    }
    return word;
}

} // namespace tarnwick
