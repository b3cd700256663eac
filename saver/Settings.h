// What a saver's bundle says about how its episode is shown.
#pragma once

#include "TarnwickCore/KeyframeTracks.h"

#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

struct Settings {
    std::string name = "Tarnwick"; // how the saver is called on screen
    ParamValues values;            // the base values of parameters; others have their defaults
    KeyframeTracks keys;           // over the saver's own clock

    bool operator==(const Settings&) const = default;
};

// Reads a settings document: a JSON object (RFC 8259) with "name", "values" and "keys", all three
// required, each of its own type and range. Nothing unless all of that holds.
std::optional<Settings> decodeSettings(std::string_view document);

} // namespace tarnwick
