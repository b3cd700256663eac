// Input from the network and from links: URLs, open links, release documents, origins.
#include "TarnwickCore/Forking.h"
#include "TarnwickCore/Service/LatestRelease.h"
#include "TarnwickCore/Service/OpenLink.h"
#include "fuzz/Input.h"
#include "fuzz/Law.h"

using namespace tarnwick;
using namespace tarnwick::fuzz;

namespace {

void readURL(std::string_view text) {
    const std::optional<URL> url = URL::parse(text);
    if (!url)
        return;
    law(URL::parse(url->string()) == url, "a written URL parses to itself");
    law(URL::parse(url->plain().string()) == url->plain(), "so does its plain form");
    law(url->path().starts_with('/'), "a path begins with a slash");
    const URL longer = url->appending(text);
    law(URL::parse(longer.string()) == longer && longer.isOfOrigin(*url),
        "a URL with a longer path is valid and of the same origin");
    url->queryItem("src");
    url->decodedPath();
    if (const auto other = url->resolved(text))
        law(other->isOfOrigin(*url), "a whole URL is itself on any page");
}

void openLink(std::string_view text) {
    const auto result = OpenLink::parse(text, OpenLink::Localhosts::refused);
    const auto* const link = std::get_if<OpenLink>(&result);
    if (link == nullptr)
        return;
    const URL& source = link->source;
    law(source.scheme() == "https" && source.host() == OpenLink::siteHost && !source.port() &&
            !source.user() && !source.password() && !source.query() && !source.fragment(),
        "a source is on the site");
    law(URL::parse(source.string()) == source, "the requested URL is the checked one");
    law(link->fileName.ends_with(".metal") && link->fileName.find('/') == std::string::npos &&
            !link->fileName.starts_with('.'),
        "a file name has no path");
}

void fork(std::string_view text) {
    const auto item = ForkedFrom::parse(text);
    law(!item || ForkedFrom::isValid(*item), "an item is valid");
    const std::string forked = ForkedFrom::insert("s/1", text);
    law(ForkedFrom::parse(forked) == item.value_or("s/1"), "the first origin is kept");
}

void readRelease(std::string_view text) {
    try {
        const LatestRelease release = LatestRelease::decode(text);
        law(!release.isNewer("9223372036854775807"), "no build is newer than the last");
    } catch (const LatestReleaseError&) {
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view text = textOf(bytes, size);
    readURL(text);
    openLink(text);
    openLink("tarnwick://open?src=" + std::string(text));
    openLink("tarnwick://open?src=https://tarnweb.example/" + std::string(text) + ".metal");
    openLink("tarnwick://open?src=https://" + std::string(text) + "tarnweb.example/a.metal");
    openLink("tarnwick://open?src=https://tarnweb.example" + std::string(text) + "/a.metal");
    fork(text);
    readRelease(text);
    return 0;
}
