#include "TarnwickCore/Movies/VideoChapters.h"

#include <nlohmann/json.hpp>

#include <cmath>

namespace tarnwick {
namespace {

using nlohmann::ordered_json;

std::string settingsOf(const ParamValues& values) {
    std::string text;
    for (const auto& [name, value] : values)
        text += (text.empty() ? "" : ", ") + settingText(name, value);
    return text;
}

// JSON (RFC 8259) represents finite numbers only.
double finite(double seconds) {
    if (!std::isfinite(seconds))
        throw VideoChaptersError("A time of the chapter list is not a finite number.");
    return seconds;
}

} // namespace

VideoChapters VideoChapters::variations(std::span<const Variation> variations, double segmentLength,
                                        double introLength) {
    VideoChapters list{.duration =
                           introLength + segmentLength * static_cast<double>(variations.size())};
    for (const Variation& variation : variations) {
        const auto place = static_cast<double>(list.chapters.size());
        list.chapters.push_back(
            {.at = introLength + segmentLength * place,
             .title = variation.highlights.empty() ? "Default settings" : variation.highlights,
             .settings = settingsOf(variation.values)});
    }
    return list;
}

std::string VideoChapters::json() const {
    ordered_json list = ordered_json::array();
    for (const Chapter& chapter : chapters)
        list.push_back(
            {{"at", finite(chapter.at)}, {"title", chapter.title}, {"settings", chapter.settings}});
    return ordered_json{{"duration", finite(duration)}, {"chapters", list}}.dump(
        -1, ' ', false, ordered_json::error_handler_t::replace);
}

VideoChapters VideoChapters::decode(std::string_view text) {
    const ordered_json document = ordered_json::parse(text.begin(), text.end(), nullptr, false);
    if (document.is_discarded())
        throw VideoChaptersError("The text is not JSON.");
    try {
        VideoChapters decoded{.duration = document.at("duration").get<double>()};
        for (const ordered_json& chapter : document.at("chapters").get<std::vector<ordered_json>>())
            decoded.chapters.push_back({.at = chapter.at("at").get<double>(),
                                        .title = chapter.at("title").get<std::string>(),
                                        .settings = chapter.at("settings").get<std::string>()});
        return decoded;
    } catch (const ordered_json::exception&) {
        throw VideoChaptersError("The document is no chapter list: that has a \"duration\" and "
                                 "\"chapters\", each with \"at\", \"title\" and \"settings\".");
    }
}

} // namespace tarnwick
