#include "TarnwickCore/Service/OpenLink.h"

#include "TarnwickCore/Episode/FileNames.h"
#include "TarnwickCore/Forking.h"
#include "TarnwickCore/Text/Pattern.h"
#include "TarnwickCore/Text/UTF8.h"

namespace tarnwick {
namespace {

using Problem = OpenLink::Problem;

bool endsInMetal(std::string path) {
    for (char& byte : path)
        if (byte >= 'A' && byte <= 'Z')
            byte = static_cast<char>(byte - 'A' + 'a');
    return path.ends_with(".metal");
}

bool isLocal(const URL& source) {
    return source.host() == "localhost" || source.host() == "127.0.0.1";
}

// The reason for which the program does not open `source`; empty if it does.
std::string objection(const URL& source, OpenLink::Localhosts localhosts) {
    if (source.user() || source.password())
        return "the address carries a user name";
    if (localhosts == OpenLink::Localhosts::allowed && isLocal(source)) {
        if (source.scheme() != "http" && source.scheme() != "https")
            return "the address is not http or https";
    } else if (source.scheme() != "https") {
        return "the address is not https";
    } else if (source.host() != OpenLink::siteHost) {
        return "the address is on " + wellFormedUTF8(source.host()) + ", not " +
               std::string(OpenLink::siteHost);
    } else if (source.port()) {
        return "the address names a port";
    }
    return endsInMetal(source.decodedPath()) ? "" : "the address is not a .metal file";
}

} // namespace

std::string OpenLink::Problem::description() const {
    switch (kind) {
    case Kind::notAllowed:
        return "Tarnwick only opens shaders from Tarnweb: " + reason;
    case Kind::notAnOpenLink:
        return "This is not a Tarnwick open link.";
    case Kind::missingSource:
        break;
    }
    return "The link does not say which shader to open.";
}

std::variant<OpenLink, Problem> OpenLink::parse(std::string_view url, Localhosts localhosts) {
    const std::optional<URL> link = URL::parse(url);
    if (!link || link->scheme() != "tarnwick" || link->host() != "open")
        return Problem{Problem::Kind::notAnOpenLink, {}};
    const std::string address = link->queryItem("src").value_or("");
    if (address.empty())
        return Problem{Problem::Kind::missingSource, {}};
    const std::optional<URL> source = URL::parse(address);
    if (!source)
        return Problem{Problem::Kind::notAllowed, "the address is not a full URL"};
    if (std::string reason = objection(*source, localhosts); !reason.empty())
        return Problem{Problem::Kind::notAllowed, std::move(reason)};
    Description described = describe(source->decodedPath());
    return OpenLink{source->plain(), std::move(described.item), std::move(described.fileName)};
}

OpenLink::Description OpenLink::describe(std::string_view path) {
    static const Pattern stage(
        R"(\A/(episode-([0-9]{2,3})-[a-z0-9-]+)/stages/([a-z0-9][a-z0-9-]*)\.metal\z)");
    static const Pattern episode(R"(\A/(episode-([0-9]{2,3})-[a-z0-9-]+)/source\.metal\z)");
    static const Pattern shared(R"(\A/s/([a-z0-9]{1,32})/source\.metal\z)");
    using std::string;
    if (const auto groups = stage.firstMatch(path)) {
        const string name((*groups)[3]);
        return {ForkedFrom::episodeItem((*groups)[2]) + "/" + name,
                string((*groups)[1]) + "-" + name + ".metal"};
    }
    if (const auto groups = episode.firstMatch(path))
        return {ForkedFrom::episodeItem((*groups)[2]), string((*groups)[1]) + ".metal"};
    if (const auto groups = shared.firstMatch(path))
        return {"s/" + string((*groups)[1]), "s-" + string((*groups)[1]) + ".metal"};
    return {std::nullopt, FileNames::safe(path)};
}

} // namespace tarnwick
