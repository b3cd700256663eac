// The small files with which desktops find and show an installed saver.
#pragma once

#include "TarnwickCore/Params.h"

#include <filesystem>
#include <span>
#include <string>
#include <string_view>

namespace tarnwick {

// `text` as one word of sh: itself, or in single quotes if it has other characters than letters,
// digits and _@%+=:,./-
std::string shellWord(std::string_view text);

// A script of sh that shows the bundle with `program` (tarnwick-saver) and passes its own words on.
// XScreenSaver finds the description of a saver by the name of its program, so each saver has a
// program of its own.
std::string launcherText(std::string_view name, const std::filesystem::path& program,
                         const std::filesystem::path& bundle);

// What XScreenSaver's settings show of a saver.
struct SaverDescription {
    std::string program;               // the file name of the launcher
    std::string name;                  // for people
    std::string text;                  // a sentence or more
    std::span<const ParamDecl> params; // defaultValue is the value of the bundle
};

// The description as XScreenSaver reads it from hacks/config/PROGRAM.xml: a slider for each
// parameter, which gives the program the words "--param-NAME VALUE".
std::string descriptionText(const SaverDescription& saver);

// An entry for mate-screensaver (Desktop Entry Specification 1.5) that runs `program` with the
// bundle.
std::string entryText(std::string_view name, const std::filesystem::path& program,
                      const std::filesystem::path& bundle);

} // namespace tarnwick
