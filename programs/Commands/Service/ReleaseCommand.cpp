// tarnwick release: whether there is a newer release, and its download.
#include "TarnwickBase/Version.h"
#include "TarnwickCore/Service/ReleaseDownload.h"
#include "TarnwickCore/Text/Lines.h"
#include "TarnwickCore/Text/TerminalText.h"
#include "programs/CommandLine/Output.h"
#include "programs/Commands/Command.h"
#include "programs/Service/Awaited.h"
#include "programs/Service/Service.h"
#include "programs/Terminal/ProgressBar.h"

#include <array>
#include <atomic>

namespace tarnwick {
namespace {

URL documentOf(const Service& service) {
    return service.isGiven() ? service.client().base.appending("app/latest.json")
                             : URL::parse(LatestRelease::feed()).value();
}

LatestRelease latestRelease(const Service& service, HeldSignals& signals) {
    const APIClient& client = service.client();
    return awaited(signals, [&](std::stop_token stop) {
        return ReleaseDownload::document(documentOf(service), client.session, client.userAgent,
                                         std::move(stop));
    });
}

std::string nameOf(const LatestRelease& release) {
    return "Tarnwick " + terminalText(release.version) + " (build " +
           std::to_string(release.build) + ")";
}

std::string newsText(const LatestRelease& release) {
    std::string text = nameOf(release) + " is newer than this one, " + programName() + ".\n" +
                       terminalText(release.url) + "\n";
    const std::string notes = release.notes.value_or("");
    for (const std::string_view line : linesOf(notes))
        text += notes.empty() ? "" : terminalText(line) + "\n";
    return text;
}

void download(const LatestRelease& release, const std::filesystem::path& file,
              const Service& service, HeldSignals& signals) {
    const APIClient& client = service.client();
    std::atomic<double> done = 0;
    ProgressBar bar("Percent");
    awaited(
        signals,
        [&](std::stop_token stop) {
            return ReleaseDownload::file(
                release, file, client.session, client.userAgent, [&](double part) { done = part; },
                std::move(stop));
        },
        [&] { bar.show(static_cast<std::int64_t>(100 * done), 100); });
}

Status release(const Arguments& arguments) {
    const auto out = Output::of(arguments, "-o", FileKind::release);
    const Service service(arguments);
    HeldSignals signals;
    const LatestRelease latest = latestRelease(service, signals);
    if (!latest.isNewer(programBuild())) {
        print("There is no newer release than this one, " + programName() + ".\n");
    } else if (!out) {
        print(newsText(latest));
    } else {
        out->writeWith(
            [&](const std::filesystem::path& place) { download(latest, place, service, signals); });
        out->say(nameOf(latest) + " is in " + out->name() + "; its SHA-256 is the right one.\n");
    }
    return Status::done;
}

constexpr auto releaseOptions =
    joined(std::array<Option, 2>{{
               {.name = "--download",
                .help = "download the release if it is newer, and check its SHA-256",
                .needs = "-o"},
               {.name = "-o",
                .value = "OUT",
                .help = "file to download to; an existing file is kept; - is standard output",
                .values = FileName{},
                .byDefault = "none",
                .needs = "--download"},
           }},
           serviceOptions);

} // namespace

const Command releaseCommand{.name = "release",
                             .operands = "",
                             .summary = "Prints whether there is a newer release of this program.",
                             .options = releaseOptions,
                             .run = release};

} // namespace tarnwick
