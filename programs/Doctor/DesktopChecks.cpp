#include "programs/Doctor/DesktopChecks.h"

#include "TarnwickPlatform/Secrets/Keyring.h"
#include "saver/HostWindow.h"

#include <sys/socket.h>
#include <sys/un.h>

#include <cstdlib>
#include <filesystem>
#include <unistd.h>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

// Whether a program listens at the Unix socket.
bool listens(const fs::path& place) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = place.string();
    if (path.empty() || path.size() >= sizeof address.sun_path)
        return false;
    path.copy(address.sun_path, path.size());
    const int connection = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool answers =
        connection >= 0 &&
        connect(connection, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    if (connection >= 0)
        close(connection);
    return answers;
}

Check displayCheck(const std::string& name, const std::string& named, bool answers) {
    const std::string value = variable(named.c_str());
    if (value.empty())
        return {.result = CheckResult::absent,
                .subject = "display",
                .name = name,
                .text = named + " is not set."};
    return {.result = answers ? CheckResult::works : CheckResult::fails,
            .subject = "display",
            .name = name,
            .text = value + (answers ? " answers." : " does not answer.")};
}

bool hasHardware() {
    std::error_code error;
    for (const auto& entry : fs::directory_iterator("/dev/snd", error))
        if (entry.path().filename().string().starts_with("pcm"))
            return access(entry.path().c_str(), R_OK | W_OK) == 0;
    return false;
}

} // namespace

Checks displayChecks() {
    const std::string wayland = variable("WAYLAND_DISPLAY");
    // A relative name is in XDG_RUNTIME_DIR, an absolute one replaces the folder.
    const fs::path socket = fs::path(variable("XDG_RUNTIME_DIR")) / wayland;
    Checks checks{displayCheck("X11", "DISPLAY", HostWindow::hasDisplay()),
                  displayCheck("Wayland", "WAYLAND_DISPLAY", !wayland.empty() && listens(socket))};
    if (checks.back().result == CheckResult::works) {
        checks.back().text += " The player requires Qt's plugin there.";
        checks.back().package = "qt6-wayland";
    }
    return checks;
}

Checks soundChecks() {
    const fs::path runtime = variable("XDG_RUNTIME_DIR");
    if (!runtime.empty() && listens(runtime / "pulse/native"))
        return {{.subject = "sound", .name = "server", .text = "A PulseAudio server answers."}};
    if (!runtime.empty() && listens(runtime / "pipewire-0"))
        return {{.subject = "sound", .name = "server", .text = "PipeWire answers."}};
    if (hasHardware())
        return {{.subject = "sound", .name = "ALSA", .text = "A sound device can be opened."}};
    return {{.result = CheckResult::absent,
             .subject = "sound",
             .name = "server",
             .text = "There is neither a sound server nor a sound device that this user may open.",
             .package = "pipewire-pulse"}};
}

Checks keyringChecks() {
    if (Keyring().answers())
        return {{.subject = "keyring",
                 .name = "Secret Service",
                 .text = "The keyring answers; accounts are kept in it."}};
    return {{.result = CheckResult::absent,
             .subject = "keyring",
             .name = "Secret Service",
             .text = "There is no keyring; accounts are kept in files that only the user can read.",
             .package = "gnome-keyring"}};
}

} // namespace tarnwick
