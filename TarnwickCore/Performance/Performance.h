// A performance: what moved while an episode was played by hand, with the times.
//
// A performance has a clock of its own, in seconds since its beginning. Its state at a time is the
// state at the beginning with all changes up to that time, so a frame of it is always the same.
#pragma once

#include "TarnwickCore/Animation/Settings.h"
#include "TarnwickCore/Live/LevelCodes.h"
#include "TarnwickCore/Performance/Transport.h"

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tarnwick {

using PointerPlace = std::optional<std::array<float, 2>>; // [0, 1] from the lower left of the
                                                          // picture; absent: the middle

// A file that a channel shows, or that the episode hears.
struct PerformedFile {
    std::string file; // its path; relative to the folder of the performance's file
    std::uint64_t bytes = 0;
    std::string sha256{};  // of the first 16 MiB
    bool isPlayed = false; // a sound that is played, too

    bool operator==(const PerformedFile&) const = default;
};

// By the name of the input: "0" to "3" are channels, "3.0" is channel 0 of the episode that channel
// 3 shows, "audio" is the sound. Channels without a file are black.
using PerformedInputs = std::map<std::string, PerformedFile>;
inline constexpr const char* soundInput = "audio";

// The levels of a microphone or of the desktop's sound; null: the episode hears the file of the
// sound input, or its own sound.
struct HeardLevels {
    std::shared_ptr<const LevelCodes> codes{};

    bool operator==(const HeardLevels& other) const {
        return codes == other.codes || (codes && other.codes && *codes == *other.codes);
    }
};

struct PerformedState {
    Settings settings;
    Transport transport; // its host clock is the clock of the performance
    PointerPlace pointer{};
    PerformedInputs inputs{};
    HeardLevels heard{};

    bool operator==(const PerformedState&) const = default;
};

struct Performance {
    struct EpisodeMark {
        std::string title;
        std::string sha256; // of the text

        bool operator==(const EpisodeMark&) const = default;
    };
    struct Value {
        std::string name;             // of the parameter
        std::optional<float> value{}; // its base value; absent: the default

        bool operator==(const Value&) const = default;
    };
    struct Track {
        std::string name;                        // of the parameter
        std::vector<KeyframeTracks::Key> keys{}; // all of its keys; may be empty

        bool operator==(const Track&) const = default;
    };
    struct Pointer {
        PointerPlace place{};

        bool operator==(const Pointer&) const = default;
    };
    struct Input {
        std::string name;
        std::optional<PerformedFile> file{}; // absent: none any more

        bool operator==(const Input&) const = default;
    };
    using What = std::variant<Value, Track, Pointer, Transport, Input, HeardLevels>;
    struct Change {
        double time = 0; // seconds of the performance
        What what;

        bool operator==(const Change&) const = default;
    };

    static constexpr double longest = 86400;   // seconds
    static constexpr double latestClock = 1e7; // seconds of the episode, of a change of the clock

    EpisodeMark episode{};
    PerformedState start{};
    std::vector<Change> changes{}; // ascending in time
    double length = 0;             // seconds; no change is after it
    // Sentences about what the performance used and does not hold, such as a camera.
    std::vector<std::string> remarks{};

    bool operator==(const Performance&) const = default;

    static EpisodeMark markOf(std::string_view title, std::string_view text);

    // The performance of declared parameters only, each value clamped to its range.
    Performance fitted(std::span<const ParamDecl> params) const;
    // One sentence for each parameter that moves and is not declared. `episode` names the source of
    // the declarations: "The episode".
    std::vector<std::string> misfits(std::span<const ParamDecl> params,
                                     std::string_view episode) const;

    // The document: lines of JSON, docs/performances.md. decode() also reads one that ends early,
    // after any byte past the first line: it has the changes up to there, and a remark. Both throw
    // DocumentError; encode() only for a number that is not finite. PerformanceJSON.cpp has them.
    std::string encode() const;
    static Performance decode(std::string_view document);
    // The lines of the document, each with its line feed, for a file that grows while it is
    // recorded.
    std::string encodedBeginning() const;
    static std::string encoded(std::span<const Change> changes);
    std::string encodedEnd() const;

    struct Summary {
        std::string title; // of the episode
        double length = 0; // seconds
    };
    // From the first and the last whole line of the document; fast for a long one. Throws
    // DocumentError.
    static Summary summary(std::string_view document);
};

// Makes the change.
void apply(const Performance::What& what, PerformedState& state);
// The changes that lead from one state to another, in the order in which they are to be made. The
// name of the settings is not one.
std::vector<Performance::What> changesBetween(const PerformedState& from, const PerformedState& to);

} // namespace tarnwick
