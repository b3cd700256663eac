#include "TarnwickPlatform/Net/Session/Redirect.h"

#include <array>

namespace tarnwick {

namespace {

bool isRedirect(int status) {
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

// Whether the method changes to GET, without a body.
bool becomesGET(int status, const std::string& method) {
    return ((status == 301 || status == 302) && method == "POST") ||
           (status == 303 && method != "GET" && method != "HEAD");
}

template <std::size_t count>
void remove(Headers& headers, const std::array<const char*, count>& names) {
    for (const char* name : names)
        headers.remove(name);
}

} // namespace

bool canBeRequested(const URL& url) {
    return (url.scheme() == "http" || url.scheme() == "https") && !url.user() && !url.password();
}

std::optional<URLRequest> redirected(const URLRequest& request, const URLResponse& response) {
    const std::string* location = response.headers.find("Location");
    if (!isRedirect(response.status) || !location)
        return std::nullopt;
    const auto url = request.url.resolved(*location);
    if (!url || !canBeRequested(*url) ||
        (request.url.scheme() == "https" && url->scheme() == "http"))
        return std::nullopt;
    URLRequest next = request;
    next.url = *url;
    if (becomesGET(response.status, request.method)) {
        next.method = "GET";
        next.body.clear();
        remove(next.headers, std::to_array({"Content-Type", "Content-Encoding", "Content-Language",
                                            "Content-Location", "Content-Length"}));
    }
    if (!url->isOfOrigin(request.url))
        remove(next.headers, std::to_array({"Authorization", "Cookie", "Proxy-Authorization"}));
    return next;
}

} // namespace tarnwick
