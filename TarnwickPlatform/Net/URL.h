// Addresses on the network (RFC 3986), parsed by the library that requests them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

// An absolute URL with a host: SCHEME://[USER[:PASSWORD]@]HOST[:PORT]/PATH[?QUERY][#FRAGMENT]. Its
// parts cannot be changed, so that the checked address is the requested one. Dot segments remain in
// the path; a request of string() must keep them.
class URL {
  public:
    // Absent if `text` is not such a URL. Stricter than curl: no blanks, control characters or
    // NULs, exactly two slashes before the host, no zone of an IPv6 address. As in curl, escapes in
    // the host are decoded, an IPv4 address is normalised, bytes above 127 in path and query become
    // escapes, and an empty query, fragment or port is absent. Takes text of any length and any
    // bytes.
    static std::optional<URL> parse(std::string_view text);

    // Resolves `reference` (RFC 3986, 4.2) against this URL: an absolute URL, //HOST/PATH, /PATH,
    // PATH, ?QUERY. Removes dot segments, also of this URL. Absent if the result is not a URL.
    std::optional<URL> resolved(std::string_view reference) const;

    const std::string& scheme() const { return scheme_; } // lower case, any: "https", "tarnwick"
    // As written, with escapes; empty if there is an @ with nothing before it.
    const std::optional<std::string>& user() const { return user_; }
    const std::optional<std::string>& password() const { return password_; }
    // ASCII letters in lower case, others as written; an IPv6 address has brackets.
    const std::string& host() const { return host_; }
    // As written; absent if the URL has none.
    const std::optional<std::uint16_t>& port() const { return port_; }
    const std::string& path() const { return path_; } // escapes as written; at least "/"
    std::string decodedPath() const;                  // any bytes; an invalid escape stays
    const std::optional<std::string>& query() const { return query_; } // escapes as written
    const std::optional<std::string>& fragment() const { return fragment_; }

    // The decoded value of the query's first NAME=VALUE whose decoded name is `name`; "+" is not
    // decoded. Empty for NAME without a value; absent if there is no such name. Any bytes.
    std::optional<std::string> queryItem(std::string_view name) const;

    // This URL with `component` appended to its path after one "/". Slashes at the component's
    // start are dropped, others stay; bytes that a path cannot have (RFC 3986, 3.3) become escapes.
    URL appending(std::string_view component) const;
    // Whether scheme, host and port are equal; an absent port equals only an absent port.
    bool isOfOrigin(const URL& other) const;
    // This URL with scheme, host, port and path only.
    URL plain() const;
    // The whole URL; parse() gives this URL again.
    std::string string() const;

    bool operator==(const URL&) const = default;

  private:
    URL() = default;
    static std::optional<URL> parseOnce(std::string_view text);

    std::string scheme_, host_, path_;
    std::optional<std::string> user_, password_, query_, fragment_;
    std::optional<std::uint16_t> port_;
};

} // namespace tarnwick
