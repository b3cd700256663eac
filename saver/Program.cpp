#include "saver/Program.h"

#include "TarnwickBase/Crashes.h"
#include "TarnwickBase/EndSignals.h"
#include "TarnwickBase/InstalledFiles.h"
#include "TarnwickBase/OutputFile.h"
#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickBase/Version.h"
#include "TarnwickCore/CommandLine/Arguments.h"
#include "TarnwickCore/Findings/Encoding.h"
#include "TarnwickCore/Text/TerminalText.h"
#include "TarnwickPlatform/Bundle/TextFile.h"
#include "TarnwickPlatform/Pictures/PNG.h"
#include "saver/CommandLine/HostOptions.h"
#include "saver/HostError.h"
#include "saver/HostWindow.h"
#include "saver/Offscreen.h"
#include "saver/ScreenProcesses.h"
#include "saver/Wayland/WaylandWindow.h"
#include "saver/WindowHost.h"

#include <array>
#include <cstdlib>
#include <iomanip>
#include <memory>
#include <ostream>
#include <string>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

constexpr PixelSize usualSize{1280, 720};
constexpr PixelSize previewSize{320, 200};

Bundle ownBundle() {
    return Bundle(installedFile(InstalledFile::saverBundle));
}

ScreenKind kindOf(const HostOptions& options) {
    return options.preview ? ScreenKind::preview : ScreenKind::fullScreen;
}

PixelSize sizeOf(const HostOptions& options) {
    return options.size.value_or(options.preview ? previewSize : usualSize);
}

// The last frame replaces neither the episode nor a file that is not a picture.
void checkPicture(const HostOptions& options) {
    const std::string episode = options.episode.value_or("").string();
    const std::string settings = options.settings.value_or("").string();
    checkOutputEnding(options.picture, FileKind::pngPicture, "-o");
    checkOutputFile(options.picture, FileKind::pngPicture,
                    std::array{std::string_view(episode), std::string_view(settings)});
}

SaverChoices choicesOf(const HostOptions& options) {
    SaverChoices choices{.params = options.params};
    if (options.longestFrame)
        choices.longestFrame = *options.longestFrame;
    return choices;
}

Status drawPicture(const HostOptions& options, const Bundle& bundle, double seconds,
                   std::ostream& out, std::ostream& errors) {
    checkPicture(options);
    const OffscreenRun run =
        drawOffscreen(bundle, kindOf(options), sizeOf(options), seconds, choicesOf(options));
    writePNG(run.last, options.picture);
    for (const std::string& remark : run.settingsRemarks)
        errors << terminalText(remark) << '\n';
    for (const auto& sentence : {run.failure, run.absence})
        if (sentence)
            errors << terminalLines(*sentence) << '\n';
    if (!run.failure)
        out << std::fixed << std::setprecision(1) << run.frames / run.seconds
            << " frames per second on " << run.device << ", drawn as fast as it can: " << run.frames
            << " frames of " << run.last.width << " x " << run.last.height << " in " << run.seconds
            << " s.\n";
    out << "The last frame is in " << terminalText(fs::absolute(options.picture).string()) << ".\n"
        << std::flush;
    errors << std::flush;
    const Status status = run.failure || run.absence ? Status::failed : Status::done;
    endSoon(static_cast<int>(status)); // the device may work for longer
    return status;
}

bool usesWayland() {
    const char* display = std::getenv("WAYLAND_DISPLAY");
    return display != nullptr && *display;
}

unsigned screenCount() {
    const unsigned outputs = usesWayland() ? WaylandWindow::outputCount() : 0;
    return outputs > 0 ? outputs : HostWindow::monitorCount();
}

// A cover, or a window where there is only Wayland, is Wayland's if there is Wayland: a window of
// X11 covers no windows of Wayland.
std::unique_ptr<HostSurface> surfaceOf(const HostOptions& options) {
    std::optional<unsigned> screen;
    if (options.untilInput)
        screen = options.output.value_or(0);
    const bool isOwn =
        !options.window && !options.root && std::getenv("XSCREENSAVER_WINDOW") == nullptr;
    if (usesWayland() && (screen || (isOwn && !HostWindow::hasDisplay())))
        return std::make_unique<WaylandWindow>(
            WaylandChoice{.output = screen, .ownSize = sizeOf(options)});
    return std::make_unique<HostWindow>(WindowChoice{
        .id = options.window, .root = options.root, .monitor = screen, .ownSize = sizeOf(options)});
}

Status show(const HostOptions& options, const Bundle& bundle, std::ostream& out,
            std::ostream& errors) {
    if (options.offscreen)
        return drawPicture(options, bundle, *options.offscreen, out, errors);
    if (options.withoutDisplay && !HostWindow::hasDisplay())
        return drawPicture(options, bundle, *options.withoutDisplay, out, errors);
    bool hasFailed = false;
    // In one piece, so that a reader never sees a part of a line.
    auto say = [&](const std::string& sentence) {
        errors << terminalLines(sentence) + '\n' << std::flush;
    };
    auto fail = [&](const std::string& failure) {
        say(failure);
        hasFailed = true;
    };
    const std::unique_ptr<HostSurface> surface = surfaceOf(options);
    showInWindow({.bundle = bundle,
                  .kind = kindOf(options),
                  .share = options.share,
                  .choices = choicesOf(options)},
                 *surface, fail, say);
    return hasFailed ? Status::failed : Status::done;
}

// The settings document of the episode.
std::optional<fs::path> settingsOf(const HostOptions& options, std::ostream& errors) {
    if (options.settings || options.noSettings)
        return options.settings;
    const std::optional<fs::path> beside = settingsBeside(*options.episode);
    if (beside)
        errors << "The settings are read from " << terminalText(beside->string())
               << "; --no-settings ignores them.\n";
    return beside;
}

// Throws HostError if the episode is not UTF-8, because a bundle then has no shader and no reason.
void checkText(const fs::path& episode) {
    const auto fault = encodingError(withoutByteOrderMark(fileBytes(episode).value_or("")));
    if (fault)
        throw HostError(episode.string() + ":" + std::to_string(fault->line) + ":" +
                        std::to_string(fault->column) + ": " + fault->message + ".");
}

Status showBundleOrEpisode(const HostOptions& options, std::ostream& out, std::ostream& errors) {
    if (!options.episode)
        return show(options, options.bundle ? Bundle(*options.bundle) : ownBundle(), out, errors);
    checkText(*options.episode);
    const std::optional<fs::path> settings = settingsOf(options, errors);
    if (options.bundle)
        return show(options, makeBundle(*options.bundle, *options.episode, settings), out, errors);
    const TemporaryFolder folder;
    return show(options, makeBundle(folder.path(), *options.episode, settings), out, errors);
}

} // namespace

Status runSaver(std::span<const char* const> arguments, std::ostream& out, std::ostream& errors) {
    try {
        const HostOptions options = parseHostOptions(arguments);
        if (options.help) {
            out << hostHelp();
            return Status::done;
        }
        if (options.version) {
            out << programName() << '\n';
            return Status::done;
        }
        // Before the bundle is made, which each process makes itself.
        if (const unsigned screens = options.untilInput && !options.output ? screenCount() : 0;
            screens > 1) {
            coverScreens(screens, arguments);
            return Status::done;
        }
        return showBundleOrEpisode(options, out, errors);
    } catch (const UsageError& error) {
        errors << "tarnwick-saver: " << terminalText(error.what())
               << " --help lists the options.\n";
        return Status::misused;
    } catch (const OutputNameError& error) {
        errors << "tarnwick-saver: " << terminalText(error.what()) << '\n';
        return Status::misused;
    } catch (const InputReadError& error) {
        errors << "tarnwick-saver: " << terminalText(error.what()) << '\n';
        return Status::misused;
    } catch (const std::exception& error) {
        errors << "tarnwick-saver: " << terminalText(sentenceOf(error)) << '\n';
        return Status::failed;
    }
}

} // namespace tarnwick
