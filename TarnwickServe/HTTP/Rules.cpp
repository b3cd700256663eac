#include "TarnwickServe/HTTP/Rules.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace tarnwick {
namespace {

SiteAnswer refusal(int status, std::string_view sentence) {
    return {.status = status, .sentence = sentence};
}

bool namesAddress(std::string host, const Connection::Address& address) {
    for (char& character : host)
        character = static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
    const std::vector<std::string> hosts = hostsOf(address);
    return std::ranges::find(hosts, host) != hosts.end();
}

// The path below the token; absent without the token.
std::optional<std::string_view> pathBelow(std::string_view path,
                                          const std::optional<AccessToken>& token) {
    if (!token)
        return path;
    const std::size_t slash = std::min(path.find('/'), path.size());
    if (!token->equals(path.substr(0, slash)) || slash == path.size())
        return std::nullopt;
    return path.substr(slash + 1);
}

} // namespace

std::vector<std::string> hostsOf(const Connection::Address& address) {
    std::vector<std::string> names{
        address.text.find(':') == std::string::npos ? address.text : "[" + address.text + "]"};
    if (address.isLoopback)
        names.emplace_back("localhost");
    std::vector<std::string> hosts;
    for (const std::string& name : names) {
        hosts.push_back(name + ":" + std::to_string(address.port));
        if (address.port == 80 || address.port == 443) // the defaults of http and https
            hosts.push_back(name);
    }
    return hosts;
}

SiteAnswer answerOf(const AskedRequest& request, const Site& site,
                    const Connection::Address& address, const std::optional<AccessToken>& token) {
    if (request.hosts.size() != 1 || !request.path.starts_with('/'))
        return refusal(400, "The request must name one host and a path.");
    if (!namesAddress(request.hosts.front(), address))
        return refusal(421, "This server answers only requests for its own address.");
    const auto path = pathBelow(std::string_view(request.path).substr(1), token);
    if (!path)
        return refusal(403, "Open the link that tarnwick serve has printed.");
    if (request.method != "GET" && request.method != "HEAD")
        return refusal(405, "This server answers only GET and HEAD.");
    if (*path == eventsPath)
        return {.kind = AnswerKind::events};
    const auto found = site.resources.find(*path);
    if (found == site.resources.end())
        return refusal(404, "Nothing is shown here.");
    return {.resource = found->second};
}

} // namespace tarnwick
