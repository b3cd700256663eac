// Settings as JSON (RFC 8259).
#include "TarnwickCore/Animation/DocumentJSON.h"
#include "TarnwickCore/Animation/KeyframeTracksJSON.h"
#include "TarnwickCore/Animation/Settings.h"
#include "TarnwickCore/Text/Numbers.h"

#include <cmath>

namespace tarnwick {
namespace {

using nlohmann::json;
using nlohmann::ordered_json;

void checkKind(const json& document) {
    auto has = [&](const char* name) { return document.contains(name); };
    if (document.is_object() && !has("name") && !has("values") && !has("keys"))
        throw DocumentError("The document has no \"name\", no \"values\" and no \"keys\".",
                            DocumentError::Cause::otherKind);
}

ParamValues valuesOf(const json& object) {
    if (!object.is_object())
        throw DocumentError("\"values\" is not an object.");
    ParamValues values;
    for (const auto& [name, number] : object.items())
        values[name] = singleOf(number, "The value of \"" + name + "\"");
    return values;
}

ordered_json documentOf(const ParamValues& values) {
    ordered_json object = ordered_json::object();
    for (const auto& [name, value] : values) {
        if (!std::isfinite(value))
            throw DocumentError("The value of \"" + name + "\" is not a finite number.");
        object[name] = asWritten(value);
    }
    return object;
}

} // namespace

// Indented, because people edit it.
std::string Settings::encode() const {
    const ordered_json document{
        {"name", name}, {"values", documentOf(values)}, {"keys", tarnwick::documentOf(keys)}};
    return document.dump(2, ' ', false, ordered_json::error_handler_t::replace) + "\n";
}

Settings Settings::decode(std::string_view text) {
    const std::string where = "The document";
    const json document = parsedDocument(text);
    checkKind(document);
    const json& name = requiredMember(document, "name", where);
    if (!name.is_string())
        throw DocumentError("\"name\" is not text.");
    return {.name = name.get<std::string>(),
            .values = valuesOf(requiredMember(document, "values", where)),
            .keys = keyframeTracksOf(requiredMember(document, "keys", where), "\"keys\"")};
}

KeyframeTracks decodeKeys(std::string_view text) {
    const json document = parsedDocument(text);
    if (document.is_object() && document.contains("keys") && !document.contains("tracks"))
        return Settings::decode(text).keys;
    return keyframeTracksOf(document, "The document");
}

} // namespace tarnwick
