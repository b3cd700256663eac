#include "TarnwickCore/Text/OutsideJSON.h"

namespace tarnwick {

using nlohmann::json;

std::optional<json> objectOf(std::string_view bytes) {
    // The parser would treat a NUL as the end of the text.
    if (bytes.find('\0') != std::string_view::npos)
        return std::nullopt;
    bool tooDeep = false;
    const auto isShallow = [&](int depth, json::parse_event_t event, const json&) {
        const bool begins =
            event == json::parse_event_t::object_start || event == json::parse_event_t::array_start;
        tooDeep = tooDeep || (begins && depth >= deepestOutsideJSON);
        return !tooDeep; // false: the parser keeps nothing more
    };
    json document = json::parse(bytes.begin(), bytes.end(), isShallow, false);
    if (tooDeep || !document.is_object())
        return std::nullopt;
    return document;
}

const json& memberOf(const json& object, const char* name) {
    static const json none;
    const auto found = object.find(name);
    return found == object.end() ? none : *found;
}

std::optional<std::string> textOf(const json& object, const char* name) {
    const json& member = memberOf(object, name);
    if (!member.is_string())
        return std::nullopt;
    return member.get<std::string>();
}

} // namespace tarnwick
