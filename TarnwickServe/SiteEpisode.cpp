#include "TarnwickServe/SiteEpisode.h"

#include "TarnwickCore/Text/SHA256.h"
#include "TarnwickServe/LivePage.h"
#include "TarnwickWeb/WebPage.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace tarnwick {
namespace {

using nlohmann::ordered_json;

constexpr std::string_view json = "application/json", html = "text/html; charset=utf-8",
                           script = "text/javascript; charset=utf-8",
                           style = "text/css; charset=utf-8";

// A compiler can find the same fault a thousand times, and a line can have a million characters.
constexpr std::size_t mostFindings = 20, mostBytes = 4000;

std::string cut(std::string text) {
    if (text.size() > mostBytes)
        text.resize(mostBytes);
    return text;
}

std::string text(const ordered_json& document) {
    return document.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

// "rose.metal:12:5"
std::string placeOf(const ShownFinding& finding, const std::string& name) {
    std::string place = finding.file.empty() ? name : finding.file;
    for (const std::int64_t number : {finding.line, finding.column})
        if (finding.line > 0 && number > 0)
            place += ":" + std::to_string(number);
    return place;
}

ordered_json findingsDocument(const SiteEpisode& episode) {
    ordered_json list = ordered_json::array();
    const std::span all(episode.findings);
    for (const ShownFinding& each : all.first(std::min(all.size(), mostFindings)))
        list.push_back({{"severity", each.severity},
                        {"place", placeOf(each, episode.name)},
                        {"message", cut(each.message)},
                        {"excerpt", cut(each.excerpt)},
                        {"hint", cut(each.hint)}});
    return list;
}

std::string_view stateName(const SiteEpisode& episode) {
    return !episode.isCompiled ? "waiting" : episode.failure.empty() ? "drawn" : "faulty";
}

ordered_json stateDocument(const SiteEpisode& episode) {
    return {{"name", episode.name},
            {"title", cut(episode.title)},
            {"state", stateName(episode)},
            {"document", episode.documentDigest},
            {"failure", cut(episode.failure)},
            {"findings", findingsDocument(episode)}};
}

ordered_json entryDocument(const SiteEpisode& episode) {
    return {{"name", episode.name},        {"address", webAddress(episode.name)},
            {"title", cut(episode.title)}, {"teaches", cut(episode.teaches)},
            {"state", stateName(episode)}, {"document", episode.documentDigest}};
}

std::shared_ptr<const std::string> shared(std::string bytes) {
    return std::make_shared<const std::string>(std::move(bytes));
}

// Constant over the life of a process.
SiteResource fixedScript() {
    static const auto bytes = shared(liveScript());
    return {script, bytes};
}
SiteResource fixedStyle() {
    static const auto bytes = shared(std::string(liveStyle()));
    return {style, bytes};
}

} // namespace

void SiteEpisode::take(EpisodeOutcome outcome) {
    isCompiled = true;
    if (outcome.isDrawn()) {
        SHA256 digest;
        digest.update(outcome.document);
        documentDigest = digest.finish();
        document = shared(std::move(outcome.document));
    }
    failure = std::move(outcome.failure);
    findings = std::move(outcome.findings);
}

Site siteOf(std::span<const SiteEpisode> episodes, bool isSingle) {
    Site site;
    auto& resources = site.resources;
    ordered_json entries = ordered_json::array();
    for (const SiteEpisode& episode : episodes) {
        const std::string address = webAddress(episode.name);
        entries.push_back(entryDocument(episode));
        resources["e/" + episode.name] = {html,
                                          shared(livePage({.root = "../", .episode = address}))};
        resources["s/" + episode.name] = {json, shared(text(stateDocument(episode)))};
        if (episode.document)
            resources["d/" + episode.name] = {json, episode.document};
        if (isSingle)
            resources[""] = {html, shared(livePage({.root = "./", .episode = address}))};
    }
    if (!isSingle)
        resources[""] = {html, shared(livePage({.root = "./", .episode = ""}))};
    resources["site.json"] = {json, shared(text({{"episodes", std::move(entries)}}))};
    resources["live.js"] = fixedScript();
    resources["live.css"] = fixedStyle();
    return site;
}

} // namespace tarnwick
