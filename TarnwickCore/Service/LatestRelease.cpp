#include "TarnwickCore/Service/LatestRelease.h"

#include "TarnwickCore/Service/ServiceHosts.h"
#include "TarnwickCore/Text/Numbers.h"
#include "TarnwickCore/Text/OutsideJSON.h"
#include "TarnwickPlatform/Net/URL.h"

#include <cmath>
#include <limits>

namespace tarnwick {
namespace {

using nlohmann::json;

[[noreturn]] void fail(const std::string& key, const std::string& words) {
    throw LatestReleaseError(key, key + " " + words);
}

std::string text(const json& document, const std::string& key) {
    std::optional<std::string> value = textOf(document, key.c_str());
    if (!value)
        fail(key, "is not text");
    return std::move(*value);
}

std::optional<std::string> textIfPresent(const json& document, const std::string& key) {
    if (memberOf(document, key.c_str()).is_null())
        return std::nullopt;
    return text(document, key);
}

std::optional<std::int64_t> integer(const json& value) {
    if (value.is_string())
        return signedIntegerOf(value.get_ref<const std::string&>());
    if (value.is_number_unsigned() &&
        value.get<std::uint64_t>() > std::uint64_t{std::numeric_limits<std::int64_t>::max()})
        return std::nullopt;
    if (value.is_number_integer())
        return value.get<std::int64_t>();
    if (!value.is_number_float())
        return std::nullopt;
    // "42.0" and "4.2e1" are 42, within the range in which doubles represent all whole numbers.
    const double number = value.get<double>();
    if (std::abs(number) > 0x1p53 || number != std::trunc(number))
        return std::nullopt;
    return static_cast<std::int64_t>(number);
}

std::string address(const json& document) {
    const std::string url = text(document, "url");
    if (!URL::parse(url) && !URL::parse(LatestRelease::feed())->resolved(url))
        fail("url", "is not a URL");
    return url;
}

} // namespace

LatestReleaseError::LatestReleaseError(std::string key, std::string description)
    : std::runtime_error("The release document cannot be read: " + description + "."),
      key(std::move(key)), description(std::move(description)) {}

std::string LatestRelease::feed() {
    return "https://" + std::string(mediaHost) + "/app/latest.json";
}

LatestRelease LatestRelease::decode(std::string_view bytes) {
    const std::optional<json> document = objectOf(bytes);
    if (!document)
        throw LatestReleaseError("", "it is not a JSON object");
    LatestRelease release;
    release.version = text(*document, "version");
    const std::optional<std::int64_t> build = integer(memberOf(*document, "build"));
    if (!build)
        fail("build", "is not a number");
    release.build = *build;
    release.url = address(*document);
    release.sha256 = textIfPresent(*document, "sha256");
    release.notes = textIfPresent(*document, "notes");
    return release;
}

bool LatestRelease::isNewer(std::string_view current) const {
    if (!url.starts_with("https:") || !URL::parse(url))
        return false;
    const std::int64_t running =
        signedIntegerOf(current).value_or(std::numeric_limits<std::int64_t>::max());
    return running < build;
}

} // namespace tarnwick
