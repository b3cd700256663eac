// Keyframe tracks as JSON (RFC 8259).
#include "TarnwickCore/Animation/KeyframeTracksJSON.h"

#include "TarnwickCore/Animation/DocumentJSON.h"
#include "TarnwickCore/Text/Numbers.h"

#include <cmath>

namespace tarnwick {
namespace {

using nlohmann::json;
using nlohmann::ordered_json;
using Key = KeyframeTracks::Key;

Key keyOf(const json& document, const std::string& where) {
    Key key;
    key.time = requiredNumber(document, "time", where);
    key.value = singleOf(requiredMember(document, "value", where), where + ": its \"value\"");
    const json& ease = requiredMember(document, "ease", where);
    const auto known = ease.is_string() ? easeOf(ease.get_ref<const std::string&>()) : std::nullopt;
    if (!known)
        throw DocumentError(where + " has an \"ease\" that is not one of linear, smooth and hold.");
    key.ease = *known;
    return key;
}

std::vector<Key> trackOf(const json& document, const std::string& name) {
    if (!document.is_array())
        throw DocumentError("The track of \"" + name + "\" is not a list.");
    std::vector<Key> keys;
    for (const json& key : document)
        keys.push_back(
            keyOf(key, "Key " + std::to_string(keys.size() + 1) + " of \"" + name + "\""));
    return keys;
}

ordered_json documentOf(const Key& key) {
    if (!std::isfinite(key.time) || !std::isfinite(key.value))
        throw DocumentError("A key's time or value is not a finite number.");
    return {{"time", key.time}, {"value", asWritten(key.value)}, {"ease", rawValue(key.ease)}};
}

} // namespace

KeyframeTracks keyframeTracksOf(const json& document, const std::string& where) {
    const json& list = requiredMember(document, "tracks", where);
    if (!list.is_object())
        throw DocumentError("\"tracks\" is not an object.");
    KeyframeTracks decoded;
    for (const auto& [name, track] : list.items())
        decoded.tracks[name] = trackOf(track, name);
    return decoded;
}

ordered_json documentOf(const KeyframeTracks& tracks) {
    ordered_json list = ordered_json::object();
    for (const auto& [name, keys] : tracks.tracks) {
        ordered_json& track = list[name] = ordered_json::array();
        for (const Key& key : keys)
            track.push_back(documentOf(key));
    }
    return {{"tracks", list}};
}

std::string KeyframeTracks::encode() const {
    return documentOf(*this).dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

KeyframeTracks KeyframeTracks::decode(std::string_view text) {
    return keyframeTracksOf(parsedDocument(text), "The document");
}

} // namespace tarnwick
