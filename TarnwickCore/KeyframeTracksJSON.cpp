// Keyframe tracks as JSON (RFC 8259).
#include "TarnwickCore/KeyframeTracks.h"
#include "TarnwickCore/Numbers.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>

namespace tarnwick {
namespace {

using nlohmann::json;
using nlohmann::ordered_json;
using Key = KeyframeTracks::Key;

[[noreturn]] void fail(const std::string& what) {
    throw KeyframeTracksError(what);
}

const json& member(const json& object, const char* name, const std::string& where) {
    if (!object.is_object())
        fail(where + " is not an object.");
    const auto found = object.find(name);
    if (found == object.end())
        fail(where + " has no \"" + name + "\".");
    return *found;
}

double number(const json& object, const char* name, const std::string& where) {
    const json& value = member(object, name, where);
    if (!value.is_number())
        fail(where + " has a \"" + name + "\" that is not a number.");
    return value.get<double>();
}

Key keyOf(const json& document, const std::string& where) {
    Key key;
    key.time = number(document, "time", where);
    const double value = number(document, "value", where);
    if (std::abs(value) > static_cast<double>(std::numeric_limits<float>::max()))
        fail(where + " has a \"value\" that does not fit into 32 bits.");
    key.value = static_cast<float>(value);
    const json& ease = member(document, "ease", where);
    const auto known = ease.is_string() ? easeOf(ease.get_ref<const std::string&>()) : std::nullopt;
    if (!known)
        fail(where + " has an \"ease\" that is not one of linear, smooth and hold.");
    key.ease = *known;
    return key;
}

std::vector<Key> trackOf(const json& document, const std::string& name) {
    if (!document.is_array())
        fail("The track of \"" + name + "\" is not a list.");
    std::vector<Key> keys;
    for (const json& key : document)
        keys.push_back(
            keyOf(key, "Key " + std::to_string(keys.size() + 1) + " of \"" + name + "\""));
    return keys;
}

ordered_json documentOf(const Key& key) {
    if (!std::isfinite(key.time) || !std::isfinite(key.value))
        fail("A key's time or value is not a finite number.");
    return {{"time", key.time}, {"value", asWritten(key.value)}, {"ease", rawValue(key.ease)}};
}

} // namespace

std::string KeyframeTracks::encode() const {
    ordered_json list = ordered_json::object();
    for (const auto& [name, keys] : tracks) {
        ordered_json& track = list[name] = ordered_json::array();
        for (const Key& key : keys)
            track.push_back(documentOf(key));
    }
    return ordered_json{{"tracks", list}}.dump(-1, ' ', false,
                                               ordered_json::error_handler_t::replace);
}

KeyframeTracks KeyframeTracks::decode(std::string_view text) {
    const json document = json::parse(text.begin(), text.end(), nullptr, false);
    if (document.is_discarded())
        fail("The text is not JSON.");
    return decode(document);
}

KeyframeTracks KeyframeTracks::decodeDocument(const json& document) {
    const json& list = member(document, "tracks", "The document");
    if (!list.is_object())
        fail("\"tracks\" is not an object.");
    KeyframeTracks decoded;
    for (const auto& [name, track] : list.items())
        decoded.tracks[name] = trackOf(track, name);
    return decoded;
}

} // namespace tarnwick
