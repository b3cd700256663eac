#include "saver/Installing/SaverPlaces.h"

#include <cstdlib>

namespace tarnwick {

SaverPlaces saverPlaces() {
    namespace fs = std::filesystem;
    const char* data = std::getenv("XDG_DATA_HOME");
    const char* home = std::getenv("HOME");
    const fs::path own = home != nullptr && *home ? home : "/";
    const fs::path base =
        data != nullptr && fs::path(data).is_absolute() ? fs::path(data) : own / ".local" / "share";
    return {.savers = base / "tarnwick" / "savers",
            .entries = base / "applications" / "screensavers",
            .xscreensaver = own / ".xscreensaver",
            .descriptions = "/usr/share/xscreensaver/config",
            .mateProgram = "/usr/libexec/xscreensaver/tarnwick-saver"};
}

} // namespace tarnwick
