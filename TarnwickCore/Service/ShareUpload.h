// An upload to the sharing service, and the checks before it.
#pragma once

#include "TarnwickCore/Episode/ShaderKind.h"
#include "TarnwickCore/Params.h"

#include <array>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

// The licence of the shared work.
enum class Licence : std::uint8_t { ccByNcSa, ccBy, mit, allRightsReserved };
inline constexpr std::array allLicences{Licence::ccByNcSa, Licence::ccBy, Licence::mit,
                                        Licence::allRightsReserved};
std::string_view rawValue(Licence licence); // as sent: "cc-by-nc-sa-4.0", "mit"
std::string_view nameOf(Licence licence);   // for people: "CC BY-NC-SA 4.0", "MIT"
std::optional<Licence> licenceNamed(std::string_view rawValue); // nothing for any other text

// Who can find the shared work.
enum class Visibility : std::uint8_t { public_, unlisted, private_ };
inline constexpr std::array allVisibilities{Visibility::public_, Visibility::unlisted,
                                            Visibility::private_};
std::string_view rawValue(Visibility visibility);                     // "public"
std::string_view nameOf(Visibility visibility);                       // "Public"
std::optional<Visibility> visibilityNamed(std::string_view rawValue); // exactly

// A number is not finite, so JSON cannot represent it. what() is one sentence for the user.
struct ShareUploadError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct ShareUpload {
    std::string title;       // [1, 80] characters without surrounding white space
    std::string description; // [0, 500] characters
    Licence licence = Licence::ccByNcSa;
    Visibility visibility = Visibility::public_;
    std::string source;            // UTF-8, up to 200,000 bytes
    std::vector<ParamDecl> params; // declared in `source`
    std::string loop;              // an MP4 movie, up to 20,000,000 bytes
    std::string thumb;             // a JPEG picture, up to 1,000,000 bytes

    bool operator==(const ShareUpload&) const = default;

    ShaderKind kind() const { return shaderKindOf(source); }
    std::optional<std::string> forkedFrom() const; // the item named in `source`

    // The reasons for which this cannot be uploaded, one sentence each, in a fixed order; empty if
    // there are none. Nothing is sent if there are any. Characters are grapheme clusters. The types
    // of the files are recognised by their first bytes. A parameter with a number that is not
    // finite is a problem, because JSON (RFC 8259, 6) cannot represent it.
    std::vector<std::string> problems() const;

    // All members except source, loop and thumb as compact JSON with sorted keys. Numbers have the
    // shortest decimals that read back as the same float; a missing fork is null; invalid UTF-8
    // becomes U+FFFD. Throws ShareUploadError if a number is not finite.
    std::string metaJSON() const;
};

} // namespace tarnwick
