// What a user publishes on the sharing service, and what stands in the way.
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

// What others may do with the shared work.
enum class Licence : std::uint8_t { ccByNcSa, ccBy, mit, allRightsReserved };
inline constexpr std::array allLicences{Licence::ccByNcSa, Licence::ccBy, Licence::mit,
                                        Licence::allRightsReserved};
std::string_view rawValue(Licence licence); // what is sent: "cc-by-nc-sa-4.0", "mit"
std::string_view nameOf(Licence licence);   // for people: "CC BY-NC-SA 4.0", "MIT"
std::optional<Licence> licenceNamed(std::string_view rawValue); // exactly

// Who finds it.
enum class Visibility : std::uint8_t { public_, unlisted, private_ };
inline constexpr std::array allVisibilities{Visibility::public_, Visibility::unlisted,
                                            Visibility::private_};
std::string_view rawValue(Visibility visibility); // "public"
std::string_view nameOf(Visibility visibility);   // "Public"
std::optional<Visibility> visibilityNamed(std::string_view rawValue);

// JSON has no form for a number; what() is the user's sentence.
struct ShareUploadError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct ShareUpload {
    std::string title;       // [1, 80] characters without the white space around
    std::string description; // [0, 500] characters
    Licence licence = Licence::ccByNcSa;
    Visibility visibility = Visibility::public_;
    std::string source;            // UTF-8, up to 200,000 bytes
    std::vector<ParamDecl> params; // those that `source` declares
    std::string loop;              // an MP4 movie, up to 20,000,000 bytes
    std::string thumb;             // a JPEG picture, up to 1,000,000 bytes

    bool operator==(const ShareUpload&) const = default;

    ShaderKind kind() const { return shaderKindOf(source); }
    std::optional<std::string> forkedFrom() const; // the item that `source` names

    // Sentences that say what stops the upload, always in the same order; empty when nothing does.
    // Nothing is sent while there are any. Characters are those that readers count. The files are
    // known by their first bytes alone. Parameters whose numbers are infinite or none are a problem
    // too, as JSON (RFC 8259, 6) has no form for those.
    std::vector<std::string> problems() const;

    // All but source, loop and thumb as compact JSON with sorted keys. Numbers have the shortest
    // decimals that are the parameter's float again; no fork is null; bytes that are not UTF-8
    // become U+FFFD. Throws ShareUploadError for the parameters that are a problem.
    std::string metaJSON() const;
};

} // namespace tarnwick
