// The settings of an episode, from its document and the command line.
#pragma once

#include "TarnwickCore/Animation/Settings.h"
#include "TarnwickCore/CommandLine/Arguments.h"
#include "TarnwickCore/Episode/Episode.h"

namespace tarnwick {

// The settings of the episode, fitted to its parameters. They come from the document that
// --settings names; default: from the document beside the episode, unless --no-settings is given.
// --values overrides their values, --set both, and --keys overrides all. Prints on standard error
// which document beside the episode is read, and the settings that do not fit the episode. Throws
// CommandError on a document that cannot be read, and on --set with an undeclared name or a value
// that is not a finite number.
Settings episodeSettingsOf(const Arguments& arguments, const Episode& episode);

// The settings of another episode than the command's own: those of the document beside it.
Settings settingsBesideOf(const Episode& episode);

// The options of settings: documents only, with single values, with keys.
constexpr std::array<Option, 2> settingsOptions{{
    {.name = "--settings",
     .value = "FILE.json",
     .help = "settings document",
     .values = FileName{},
     .byDefault = "NAME.json beside NAME.metal",
     .excludes = "--no-settings"},
    {.name = "--no-settings", .help = "ignore the settings document beside the episode"},
}};
constexpr auto valueOptions =
    joined(std::array<Option, 1>{{
               {.name = "--set",
                .value = "NAME=VALUE",
                .help = "base value of a parameter",
                .byDefault = "value of the settings document, or of the @param line",
                .isRepeatable = true},
           }},
           settingsOptions);
constexpr auto animationOptions =
    joined(std::array<Option, 1>{{
               {.name = "--keys",
                .value = "FILE.json",
                .help = "keys of parameters: a document of keys or of settings",
                .values = FileName{},
                .byDefault = "keys of the settings document"},
           }},
           valueOptions);

} // namespace tarnwick
