// The document that says which release of the program is the newest.
#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tarnwick {

// Text that is no release document; what() is the user's sentence around `description`.
struct LatestReleaseError : std::runtime_error {
    LatestReleaseError(std::string key, std::string description);

    std::string key;         // of the member that is amiss; empty for the document
    std::string description; // "build is not a number"
};

struct LatestRelease {
    std::string version;               // as shown to people
    std::int64_t build = 0;            // what orders releases
    std::string url;                   // of the download, as written
    std::optional<std::string> sha256; // of the download, as written; for the downloader to check
    std::optional<std::string> notes;

    bool operator==(const LatestRelease&) const = default;

    // Where the document is: an https URL.
    static std::string feed();

    // Reads a JSON object with those members; of others nothing is read. "build" is a number
    // without a fraction or text that signedIntegerOf() reads; "sha256" and "notes" may be missing
    // or null. "url" is what URL reads, of any scheme, or a reference to such a thing. Throws
    // LatestReleaseError.
    static LatestRelease decode(std::string_view json);

    // Whether it is newer than the build called `current`. False for a `current` that is no number,
    // and unless `url` is one that URL reads and begins with "https:" in lower case.
    bool isNewer(std::string_view current) const;
};

} // namespace tarnwick
