// Installs savers for the user's desktop, lists and removes them.
#pragma once

#include "TarnwickCore/Animation/Settings.h"
#include "TarnwickCore/Episode/Episode.h"
#include "TarnwickPlatform/Bundle/BundleChannels.h"
#include "saver/Installing/SaverPlaces.h"

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

// A saver cannot be installed or removed. what() is one sentence.
struct InstallError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// A bundle in the user's folder of savers. The player makes bundles there that are not installed.
struct InstalledSaver {
    std::string name;             // for people: of its settings
    std::filesystem::path bundle; // the folder
    bool isInstalled = false;     // by installSaver
    bool isListed = false;        // in the programs of XScreenSaver
    bool hasEntry = false;        // for mate-screensaver

    // The file name without its extension, the other name of the saver: "my-rings".
    std::string id() const { return bundle.stem().string(); }
};

struct SaverOrder {
    const Episode& episode;
    Settings settings;             // their name is the name of the saver
    std::filesystem::path program; // tarnwick-saver
    std::vector<BundleChannel> channels{};
};

// What an installation or a removal has to tell: sentences.
struct InstallReport {
    std::filesystem::path bundle;
    std::vector<std::string> remarks;
};

// In lower case, "my-rings" for "My Rings": letters, digits and hyphens of ASCII, at most 60.
std::string saverId(std::string_view name);

// Makes the bundle `savers`/ID.saver with a launcher and a description in it, adds the launcher to
// the programs of XScreenSaver if that is installed, and an entry for mate-screensaver if that may
// run `mateProgram`. Installing a name again replaces that saver; an id that a saver of another
// name has gets a number. The file install.json of the bundle lists all files with their digests: a
// file that a person made or changed is never replaced. Throws InstallError; then no file of
// another program is changed, and a new saver leaves no file. If the process is killed, the same
// call completes the installation, and uninstallSaver() undoes it. Blocks.
InstallReport installSaver(const SaverOrder& order, const SaverPlaces& places);

// In the order of their ids. Blocks.
std::vector<InstalledSaver> installedSavers(const SaverPlaces& places);

// The saver with this name or id. Blocks.
std::optional<InstalledSaver> saverNamed(std::string_view name, const SaverPlaces& places);

// Removes what installSaver() made, except files that were changed since. Throws InstallError if
// the saver was not installed by it. Blocks.
InstallReport uninstallSaver(const InstalledSaver& saver, const SaverPlaces& places);

} // namespace tarnwick
