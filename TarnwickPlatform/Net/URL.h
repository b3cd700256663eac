// Addresses of things on the network (RFC 3986), taken apart by the library that requests them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

// An absolute URL with a host: SCHEME://[USER[:PASSWORD]@]HOST[:PORT]/PATH[?QUERY][#FRAGMENT]. A
// value; its parts cannot be changed, so that what was checked is what is requested. Whoever
// requests string() must not have dot segments taken out of the path, as nothing here does.
class URL {
  public:
    // Nothing for what is no such URL. Stricter than curl itself: no blanks, control characters or
    // NULs anywhere, exactly two slashes before the host, no zone of an IPv6 address. As curl does,
    // escapes in the host are decoded, an IPv4 address is brought into its usual form, bytes past
    // ASCII in path and query become escapes, and an empty query, fragment or port counts as none.
    // Text of any length and any bytes is taken.
    static std::optional<URL> parse(std::string_view text);

    // What `reference` (RFC 3986, 4.2) means on the page of this URL: an absolute URL, //HOST/PATH,
    // /PATH, PATH, ?QUERY. Dot segments are taken out, this URL's too. Nothing when that is none.
    std::optional<URL> resolved(std::string_view reference) const;

    const std::string& scheme() const { return scheme_; } // lower case, any: "https", "tarnwick"
    // As written, escapes and all; empty where there is an @ with nothing before it.
    const std::optional<std::string>& user() const { return user_; }
    const std::optional<std::string>& password() const { return password_; }
    // Letters of ASCII in lower case, others as written; an IPv6 address in brackets.
    const std::string& host() const { return host_; }
    // Only where the URL has one, also if it is the scheme's own.
    const std::optional<std::uint16_t>& port() const { return port_; }
    const std::string& path() const { return path_; } // escapes as written; "/" at least
    std::string decodedPath() const;                  // any bytes; an escape that is none stays
    const std::optional<std::string>& query() const { return query_; } // escapes as written
    const std::optional<std::string>& fragment() const { return fragment_; }

    // The value of the query's first NAME=VALUE whose decoded name is `name`, decoded; a plus is a
    // plus. Empty for NAME without a value; nothing where there is none. Any bytes.
    std::optional<std::string> queryItem(std::string_view name) const;

    // This URL with `component` at the end of its path, one "/" between. Slashes at the component's
    // start are dropped, others stay; what a path cannot hold (RFC 3986, 3.3) becomes an escape.
    URL appending(std::string_view component) const;
    // Scheme, host and port are equal; a port that is not written equals only itself.
    bool isOfOrigin(const URL& other) const;
    // Scheme, host, port and path alone.
    URL plain() const;
    // The whole; parses as this URL again.
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
