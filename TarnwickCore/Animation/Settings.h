// How an episode is shown: base values of its parameters, and keys that move them over time.
#pragma once

#include "TarnwickCore/Animation/KeyframeTracks.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

struct Settings {
    std::string name = "Tarnwick"; // how a saver is called on screen
    ParamValues values;            // base values; a parameter without one has its default
    KeyframeTracks keys;           // over the episode's time; they go before the base values

    bool operator==(const Settings&) const = default;

    // The values at `time`, in seconds.
    ParamValues valuesAt(double time) const { return keys.values(time, values); }

    // The settings of declared parameters alone, each value brought into its declaration's range.
    Settings fitted(std::span<const ParamDecl> params) const;
    // What fitted() changes, a sentence each. They name the declarations' source as `episode`:
    // "The episode".
    std::vector<std::string> misfits(std::span<const ParamDecl> params,
                                     std::string_view episode) const;

    // The document: a JSON object (RFC 8259) with "name", "values" and "keys", all three required;
    // "keys" as KeyframeTracks writes it. Other members are ignored. A document that is written
    // and read again is equal. Throw DocumentError; encode() only on numbers that JSON has no form
    // for. Both are in SettingsJSON.cpp.
    std::string encode() const;
    static Settings decode(std::string_view json);
};

// The keys in a document of keys or of settings. Throws DocumentError.
KeyframeTracks decodeKeys(std::string_view json);

// "mine.metal declares no parameter "blue"; it declares red, green."
std::string undeclaredSentence(std::string_view name, std::span<const ParamDecl> params,
                               std::string_view episode);
// The sentence on a value that the declaration's range does not hold; empty where it does.
std::string clampedSentence(const ParamDecl& param, float value);

} // namespace tarnwick
