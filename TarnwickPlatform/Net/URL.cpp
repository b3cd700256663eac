#include "TarnwickPlatform/Net/URL.h"

#include <curl/curl.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <memory>

namespace tarnwick {
namespace {

using Handle = std::unique_ptr<CURLU, decltype(&curl_url_cleanup)>;
using Text = std::unique_ptr<char, decltype(&curl_free)>;

constexpr unsigned flags = CURLU_NON_SUPPORT_SCHEME | CURLU_PATH_AS_IS | CURLU_URLENCODE;

// Refuses blanks, which curl would change to pluses or escapes.
bool isClean(std::string_view text) {
    return std::none_of(text.begin(), text.end(), [](char byte) {
        const auto value = static_cast<unsigned char>(byte);
        return value <= 0x20 || value == 0x7F;
    });
}

std::string lowerCased(std::string text) {
    for (char& byte : text)
        if (byte >= 'A' && byte <= 'Z')
            byte = static_cast<char>(byte - 'A' + 'a');
    return text;
}

bool set(const Handle& url, std::string_view text, unsigned how = flags) {
    return url && isClean(text) &&
           curl_url_set(url.get(), CURLUPART_URL, std::string(text).c_str(), how) == CURLUE_OK;
}

std::optional<std::string> part(const Handle& url, CURLUPart which) {
    char* text = nullptr;
    if (curl_url_get(url.get(), which, &text, 0) != CURLUE_OK)
        return std::nullopt;
    return std::string(Text(text, &curl_free).get());
}

std::optional<std::string> partOrNone(const Handle& url, CURLUPart which) {
    std::optional<std::string> text = part(url, which);
    return text && text->empty() ? std::nullopt : text;
}

std::optional<std::uint16_t> portOf(const std::optional<std::string>& digits) {
    std::uint16_t port = 0;
    if (!digits ||
        std::from_chars(digits->data(), digits->data() + digits->size(), port).ec != std::errc())
        return std::nullopt;
    return port;
}

std::string decoded(std::string_view text) {
    if (text.empty()) // for curl, length 0 means "up to the NUL"
        return {};
    int size = 0;
    const Text bytes(curl_easy_unescape(nullptr, text.data(), static_cast<int>(text.size()), &size),
                     &curl_free);
    return bytes ? std::string(bytes.get(), static_cast<std::size_t>(size)) : std::string();
}

std::string escaped(std::string_view path) {
    constexpr std::string_view digits = "0123456789ABCDEF", marks = "-._~/:@!$&'()*+,;=";
    std::string text;
    for (const char byte : path) {
        const auto value = static_cast<unsigned char>(byte);
        if (value < 0x80 && (std::isalnum(value) || marks.find(byte) != marks.npos))
            text += byte;
        else
            text.append({'%', digits[value >> 4], digits[value & 15]});
    }
    return text;
}

} // namespace

// Each parse decodes an escaped escape in the host ("%2541") once, and the library parses again for
// the request. So a URL must parse to itself.
std::optional<URL> URL::parse(std::string_view text) {
    const std::optional<URL> url = parseOnce(text);
    return url && parseOnce(url->string()) == url ? url : std::nullopt;
}

std::optional<URL> URL::parseOnce(std::string_view text) {
    const Handle handle(curl_url(), &curl_url_cleanup);
    if (!set(handle, text))
        return std::nullopt;
    const auto scheme = part(handle, CURLUPART_SCHEME), host = part(handle, CURLUPART_HOST),
               path = part(handle, CURLUPART_PATH);
    if (!scheme || !host || host->empty() || !path || part(handle, CURLUPART_ZONEID))
        return std::nullopt;
    const std::string_view behind = text.substr(std::min(scheme->size(), text.size()));
    if (!behind.starts_with("://") || behind.starts_with(":///"))
        return std::nullopt;
    URL url;
    url.scheme_ = lowerCased(*scheme);
    url.host_ = lowerCased(*host);
    url.path_ = *path;
    url.user_ = part(handle, CURLUPART_USER);
    url.password_ = part(handle, CURLUPART_PASSWORD);
    url.port_ = portOf(part(handle, CURLUPART_PORT));
    url.query_ = partOrNone(handle, CURLUPART_QUERY);
    url.fragment_ = partOrNone(handle, CURLUPART_FRAGMENT);
    return url;
}

std::optional<URL> URL::resolved(std::string_view reference) const {
    const Handle handle(curl_url(), &curl_url_cleanup);
    constexpr unsigned dotless = flags & ~unsigned{CURLU_PATH_AS_IS};
    if (reference.empty() || !set(handle, string(), dotless) || !set(handle, reference, dotless))
        return std::nullopt;
    const std::optional<std::string> whole = part(handle, CURLUPART_URL);
    return whole ? parse(*whole) : std::nullopt;
}

std::string URL::decodedPath() const {
    return decoded(path_);
}

std::optional<std::string> URL::queryItem(std::string_view name) const {
    std::string_view rest = query_ ? std::string_view(*query_) : std::string_view();
    while (!rest.empty()) {
        const std::string_view item = rest.substr(0, rest.find('&'));
        rest.remove_prefix(std::min(item.size() + 1, rest.size()));
        const std::size_t sign = std::min(item.find('='), item.size());
        if (decoded(item.substr(0, sign)) == name)
            return decoded(item.substr(std::min(sign + 1, item.size())));
    }
    return std::nullopt;
}

URL URL::appending(std::string_view component) const {
    component.remove_prefix(std::min(component.find_first_not_of('/'), component.size()));
    URL url = *this;
    if (!url.path_.ends_with('/'))
        url.path_ += '/';
    url.path_ += escaped(component);
    return url;
}

bool URL::isOfOrigin(const URL& other) const {
    return scheme_ == other.scheme_ && host_ == other.host_ && port_ == other.port_;
}

URL URL::plain() const {
    URL url;
    url.scheme_ = scheme_;
    url.host_ = host_;
    url.port_ = port_;
    url.path_ = path_;
    return url;
}

std::string URL::string() const {
    std::string text = scheme_ + "://";
    if (user_ || password_)
        text += user_.value_or("") + (password_ ? ":" + *password_ : "") + "@";
    text += host_;
    if (port_)
        text += ":" + std::to_string(*port_);
    text += path_;
    if (query_)
        text += "?" + *query_;
    if (fragment_)
        text += "#" + *fragment_;
    return text;
}

} // namespace tarnwick
