#include "TarnwickCore/Service/ServiceRecords.h"

#include "TarnwickCore/Text/OutsideJSON.h"

#include <algorithm>

namespace tarnwick {
namespace {

using nlohmann::json;

std::optional<URL> pageOf(const json& object, const char* name) {
    std::optional<URL> url = URL::parse(textOf(object, name).value_or(""));
    const bool isPage = url && (url->scheme() == "https" || url->scheme() == "http");
    return isPage ? url : std::nullopt;
}

// Whether the member is text, null or missing.
bool isTextOrAbsent(const json& object, const char* name) {
    const json& member = memberOf(object, name);
    return member.is_null() || member.is_string();
}

double intervalOf(const json& object) {
    const json& interval = memberOf(object, "interval");
    return std::clamp(interval.is_number() ? interval.get<double>() : 5.0, 1.0, 60.0);
}

Date dateOfNumber(double number, Date now) {
    constexpr double day = 86'400, latestInSeconds = 100'000'000'000;
    if (number < day)
        return now + std::chrono::duration<double>(number);
    return dateAt(number > latestInSeconds ? number / 1000 : number);
}

std::optional<Date> expiryOf(const json& object, Date now) {
    const json& expires = memberOf(object, "expires");
    if (expires.is_number())
        return dateOfNumber(expires.get<double>(), now);
    return dateOf(textOf(object, "expires").value_or(""));
}

} // namespace

std::optional<LinkStart> LinkStart::decode(std::string_view bytes, Date now) {
    const auto object = objectOf(bytes);
    if (!object)
        return std::nullopt;
    const auto device = textOf(*object, "device"), code = textOf(*object, "code");
    const auto url = pageOf(*object, "url");
    if (!device || !code || !url)
        return std::nullopt;
    return LinkStart{*device, *code, *url, intervalOf(*object), expiryOf(*object, now)};
}

std::optional<Approved> Approved::decode(std::string_view bytes) {
    const auto object = objectOf(bytes);
    if (!object || !isTextOrAbsent(*object, "handle"))
        return std::nullopt;
    const auto token = textOf(*object, "token"), email = textOf(*object, "email");
    if (!token || !email)
        return std::nullopt;
    return Approved{*token, *email, textOf(*object, "handle")};
}

std::optional<Me> Me::decode(std::string_view bytes) {
    const auto object = objectOf(bytes);
    if (!object || !isTextOrAbsent(*object, "handle"))
        return std::nullopt;
    const auto email = textOf(*object, "email");
    if (!email)
        return std::nullopt;
    return Me{*email, textOf(*object, "handle")};
}

std::optional<Shared> Shared::decode(std::string_view bytes) {
    const auto object = objectOf(bytes);
    if (!object)
        return std::nullopt;
    const auto id = textOf(*object, "id");
    const auto url = pageOf(*object, "url");
    if (!id || !url)
        return std::nullopt;
    return Shared{*id, *url};
}

} // namespace tarnwick
