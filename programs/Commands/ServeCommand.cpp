// tarnwick serve: episodes in browsers while they are written with any editor.
#include "TarnwickBase/EndSignals.h"
#include "TarnwickCore/Findings.h"
#include "TarnwickCore/Findings/Encoding.h"
#include "TarnwickCore/Text/Lines.h"
#include "TarnwickServe/LocalServer.h"
#include "TarnwickServe/ServeError.h"
#include "TarnwickServe/SiteBuilder.h"
#include "TarnwickWeb/WebDocument.h"
#include "TarnwickWeb/WebError.h"
#include "programs/Commands/Command.h"
#include "programs/Episode/EpisodeProgram.h"
#include "programs/Terminal/Excerpt.h"
#include "programs/Terminal/Findings.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <poll.h>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view defaultPort = "8642";

ShownFinding shown(const Finding& finding, std::span<const std::string_view> lines) {
    const auto& [diagnostic, hint] = finding;
    ShownFinding shown{.severity = std::string(rawValue(diagnostic.severity)),
                       .message = diagnostic.message,
                       .line = diagnostic.line,
                       .column = diagnostic.column,
                       .hint = hint};
    if (diagnostic.line > 0 && diagnostic.line <= static_cast<std::int64_t>(lines.size()))
        shown.excerpt = excerpt(lines[static_cast<std::size_t>(diagnostic.line) - 1],
                                diagnostic.line, diagnostic.column, Colours::none);
    return shown;
}

EpisodeOutcome refused(const Episode& episode, std::span<const Finding> findings,
                       const std::string& failure) {
    EpisodeOutcome outcome{.failure = failure};
    const std::vector<std::string_view> lines = compilerLines(episode.text);
    for (const Finding& finding : findings)
        outcome.findings.push_back(shown(finding, lines));
    return outcome;
}

// What an episode that is no page is told: the compiler's findings, if it does not compile at all.
EpisodeOutcome refusedBy(const WebError& error, const Episode& episode, const std::string& path) {
    const EpisodeFindings checked = checkEpisode(episode, nullptr);
    if (checked.compiles)
        return {.failure = error.what()};
    const std::vector<Finding> findings = findingsOf(episode, checked.diagnostics);
    printFindings(path, episode.text, findings);
    return refused(episode, findings,
                   episode.path + " does not compile" +
                       (findings.empty() ? ": " + firstErrorLine(checked.raw) : "."));
}

EpisodeOutcome outcomeOf(const Episode& episode, const Settings& settings,
                         const std::string& path) {
    if (const auto fault = encodingError(episode.text)) {
        const std::array findings{Finding{.diagnostic = *fault, .hint = ""}};
        printFindings(path, episode.text, findings);
        return refused(episode, findings, episode.path + " is not text in UTF-8.");
    }
    try {
        return {.document = webDocument(episode, settings, WebProgram::make(episode))};
    } catch (const WebError& error) {
        return refusedBy(error, episode, path);
    }
}

void tellOf(const EpisodeReport& report) try {
    if (report.kind == EpisodeReport::Kind::removed)
        return print(terminalText(report.name) + " is removed.\n");
    for (const ShownFinding& finding : report.outcome.findings)
        if (!finding.file.empty())
            tell(finding.file + ": " + finding.message);
    if (!report.outcome.isDrawn())
        return tell(report.outcome.failure);
    std::array<char, 32> seconds{};
    std::snprintf(seconds.data(), seconds.size(), "%.2f s", report.seconds);
    print(terminalText(report.name) + " is drawn (compiled in " + seconds.data() + ").\n");
} catch (const CommandError&) {
    // The pages go on, though the output is closed.
}

void waitForEnd(const HeldSignals& signals) {
    while (!signals.arrived()) {
        pollfd one{.fd = signals.descriptor(), .events = POLLIN, .revents = 0};
        poll(&one, 1, 1000);
    }
}

ServeOptions optionsOf(const Arguments& arguments) {
    ServeOptions options{.port = static_cast<int>(arguments.integerOf("--port"))};
    if (const auto address = arguments.value("--listen")) {
        options.addresses = {std::string(*address)};
        options.token = AccessToken::make();
        options.isEncrypted = true;
    }
    return options;
}

Status serve(const Arguments& arguments) {
    const fs::path given = arguments.operand();
    try {
        const SitePlace place = SitePlace::of(given);
        const fs::path folder = place.only.empty() ? given : given.parent_path();
        HeldSignals signals;
        SiteNews news;
        const LocalServer server(optionsOf(arguments), news);
        for (const std::string& link : server.links())
            print(link + "\n");
        if (!server.fingerprint().empty())
            print("Browsers warn of the certificate, which is made for this run. Its SHA-256 "
                  "fingerprint:\n" +
                  server.fingerprint() + "\n");
        print("Ctrl-C ends.\n");
        const SiteBuilder builder(
            place,
            [folder](const Episode& episode, const Settings& settings) {
                return outcomeOf(episode, settings, (folder / episode.path).string());
            },
            news, tellOf);
        waitForEnd(signals);
        return Status::done;
    } catch (const ServeError& error) {
        failure(error.what());
    }
}

constexpr std::array<Option, 2> serveOptions{{
    {.name = "--port",
     .value = "N",
     .help = "port of the server; 0: any that is free",
     .values = WholeNumber{.least = 0, .most = 65535},
     .byDefault = defaultPort},
    {.name = "--listen",
     .value = "ADDRESS",
     .help =
         "address of this machine under which others reach the server, 0.0.0.0 for all of IPv4; "
         "its link, of https, has a secret part, without which nothing is shown",
     .byDefault = "this machine only"},
}};

} // namespace

const Command serveCommand{.name = "serve",
                           .operands = "EPISODE.metal | FOLDER",
                           .summary =
                               "Shows an episode, or those of a folder, in browsers, and draws "
                               "each again when it is saved.",
                           .options = serveOptions,
                           .run = serve};

} // namespace tarnwick
