// The settings of an episode: base values of its parameters, and keys that change them over time.
#pragma once

#include "TarnwickCore/Animation/KeyframeTracks.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

struct Settings {
    std::string name = "Tarnwick"; // the name of the saver on screen
    ParamValues values;            // base values; default: of the declaration
    KeyframeTracks keys;           // over the episode's time; they override the base values

    bool operator==(const Settings&) const = default;

    // The values at `time`, in seconds of the episode.
    ParamValues valuesAt(double time) const { return keys.values(time, values); }

    // The settings of declared parameters only, each value clamped to its range.
    Settings fitted(std::span<const ParamDecl> params) const;
    // One sentence for each change that fitted() makes. `episode` names the source of the
    // declarations: "The episode".
    std::vector<std::string> misfits(std::span<const ParamDecl> params,
                                     std::string_view episode) const;

    // The document: a JSON object (RFC 8259) with "name", "values" and "keys", all three required;
    // "keys" has the form of KeyframeTracks. Other members are ignored. Writing and reading a
    // document gives equal settings. Both throw DocumentError; encode() only for a number that is
    // not finite. Both are in SettingsJSON.cpp.
    std::string encode() const;
    static Settings decode(std::string_view json);
};

// Reads the keys of a document of keys or of settings. Throws DocumentError.
KeyframeTracks decodeKeys(std::string_view json);

// "mine.metal declares no parameter "blue"; it declares red, green."
std::string undeclaredSentence(std::string_view name, std::span<const ParamDecl> params,
                               std::string_view episode);
// A sentence about a value outside the range of the declaration; empty if it is inside.
std::string clampedSentence(const ParamDecl& param, float value);

} // namespace tarnwick
