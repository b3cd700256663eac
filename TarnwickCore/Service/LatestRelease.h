// The document of the newest release of the program.
#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tarnwick {

// A text that is not a valid release document. what() is the sentence for the user and contains
// `description`.
struct LatestReleaseError : std::runtime_error {
    LatestReleaseError(std::string key, std::string description);

    std::string key;         // of the invalid member; empty for the whole document
    std::string description; // "build is not a number"
};

struct LatestRelease {
    std::string version;               // for people
    std::int64_t build = 0;            // a newer release has a greater number
    std::string url;                   // of the download, as in the document
    std::optional<std::string> sha256; // of the download, as in the document; not checked here
    std::optional<std::string> notes;

    bool operator==(const LatestRelease&) const = default;

    // The address of the document: an https URL.
    static std::string feed();

    // Reads a JSON object with these members; others are ignored. "build" is a number without a
    // fraction or a text that signedIntegerOf() accepts. "sha256" and "notes" may be missing or
    // null. "url" is a URL of any scheme, or a relative reference. Throws LatestReleaseError.
    static LatestRelease decode(std::string_view json);

    // Whether it is newer than the build `current`. False if `current` is not a number, or if `url`
    // is not a valid URL that begins with "https:" in lower case.
    bool isNewer(std::string_view current) const;
};

} // namespace tarnwick
