// The settings of an episode, as its document and the command line give them.
#pragma once

#include "TarnwickCore/Animation/Settings.h"
#include "TarnwickCore/Episode/Episode.h"
#include "TarnwickRender/ValuesAt.h"
#include "programs/CommandLine/Arguments.h"

namespace tarnwick {

// The settings of the episode, fitted to its parameters. They come
// from the document that --settings names, else from the one beside the episode, unless
// --no-settings is given; over those of a parameter go --set, then the keys of --keys. Says on
// standard error which document beside the episode is read, and what of the settings does not fit
// the episode. Throws CommandError on a document that cannot be read, and on --set with an
// undeclared name or a value that is not a finite number.
Settings episodeSettingsOf(const Arguments& arguments, const Episode& episode);

// The settings' values at each time, for what draws; empty where they have no keys.
ValuesAt valuesOverTime(const Settings& settings);

constexpr Option setOption{"--set", "NAME=VALUE", "base value of a parameter; may be repeated"};
constexpr Option keysOption{"--keys", "FILE.json",
                            "keys of parameters, from a document of keys or of settings"};
constexpr Option settingsOption{"--settings", "FILE.json",
                                "settings document; default: NAME.json beside NAME.metal"};
constexpr Option noSettingsOption{"--no-settings", "",
                                  "ignore the settings document beside the episode"};

} // namespace tarnwick
