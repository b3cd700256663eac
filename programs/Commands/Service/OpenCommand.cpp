// tarnwick open: the shader that a link of the sharing service's pages names.
#include "TarnwickCore/Episode/FileNames.h"
#include "TarnwickCore/Forking.h"
#include "TarnwickCore/Service/OpenLink.h"
#include "TarnwickCore/Service/ShaderDownload.h"
#include "TarnwickCore/Text/TerminalText.h"
#include "programs/CommandLine/NewFile.h"
#include "programs/Commands/Command.h"
#include "programs/Service/Awaited.h"
#include "programs/Service/ProgramBeside.h"
#include "programs/Service/Service.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <unistd.h>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

// Links to this machine are valid only if the service is on this machine.
OpenLink linkOf(const Arguments& arguments, const APIClient& client) {
    const auto localhosts =
        client.isLocal() ? OpenLink::Localhosts::allowed : OpenLink::Localhosts::refused;
    auto parsed = OpenLink::parse(arguments.operand(), localhosts);
    if (const auto* problem = std::get_if<OpenLink::Problem>(&parsed))
        misuse(problem->description());
    return std::get<OpenLink>(std::move(parsed));
}

fs::path folderOf(const Arguments& arguments) {
    const fs::path folder = arguments.value("-o").value_or("");
    std::error_code error;
    if (!folder.empty() && fs::exists(folder, error) && !fs::is_directory(folder, error))
        misuse(folder.string() + " is not a folder.");
    if (access(folder.empty() ? "." : folder.c_str(), W_OK | X_OK) != 0)
        failure((folder.empty() ? "." : folder.string()) +
                " cannot be written to: " + std::strerror(errno) + ".");
    return folder;
}

// Another process may take a name between the check and the writing; then the next name is tried.
fs::path saved(const std::string& source, const OpenLink& link, const fs::path& folder) {
    while (true) {
        const fs::path path = FileNames::unique(link.fileName, folder, [](const fs::path& file) {
            std::error_code error;
            return fs::exists(fs::symlink_status(file, error));
        });
        if (writeNewFile(path, source))
            return path;
    }
}

bool hasWindows() {
    const char* display = std::getenv("DISPLAY");
    return display != nullptr && *display != '\0';
}

Status open(const Arguments& arguments) {
    const Service service(arguments);
    const OpenLink link = linkOf(arguments, service.client());
    const fs::path folder = folderOf(arguments);
    fs::path path;
    {
        HeldSignals signals;
        std::string source = awaited(signals, [&](std::stop_token stop) {
            return ShaderDownload::fetch(link, service.client().session, service.client().userAgent,
                                         std::move(stop));
        });
        if (link.item)
            source = ForkedFrom::insert(*link.item, source);
        path = saved(source, link, folder);
    }
    print(terminalText(path.string()) + "\n");
    if (arguments.has("--no-play"))
        return Status::done;
    if (!hasWindows()) {
        tell("The episode is not shown: there is no display, because DISPLAY is not set.");
        return Status::done;
    }
    // Absolute, so that its name is not read as an option.
    const std::string episode = fs::absolute(path).string();
    becomeSaver({&episode, 1});
}

constexpr auto openOptions =
    joined(std::array<Option, 2>{{
               {.name = "-o",
                .value = "FOLDER",
                .help = "folder to save the shader in",
                .values = AnyText{},
                .byDefault = "the current folder"},
               {.name = "--no-play", .help = "do not show the shader in a window"},
           }},
           serviceOptions);

} // namespace

const Command openCommand{.name = "open",
                          .operands = "LINK",
                          .summary =
                              "Downloads the shader that a link of the service's pages names, "
                              "saves it and shows it; no file is overwritten.",
                          .options = openOptions,
                          .run = open};

} // namespace tarnwick
