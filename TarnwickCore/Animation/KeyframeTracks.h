// Parameters that change over time: a list of keys for each name, and how the value changes between
// them.
#pragma once

#include "TarnwickCore/Animation/DocumentError.h"
#include "TarnwickCore/Params.h"

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

class KeyframeTracks {
  public:
    // How a value moves from its key to the next one.
    enum class Ease : std::uint8_t { linear, smooth, hold };
    static constexpr std::array<Ease, 3> allEases{Ease::linear, Ease::smooth, Ease::hold};

    struct Key {
        double time = 0; // seconds from the start of the animation; set() makes it at least 0
        float value = 0;
        Ease ease = Ease::smooth; // to the next key; unused in the last key

        bool operator==(const Key&) const = default;
    };

    // Times closer than this, in seconds, are the same.
    static constexpr double snap = 0.008333333333333333;

    // By name of the parameter. The operations below keep each list ascending in time, without two
    // keys closer than `snap`. decode() does not reorder.
    std::map<std::string, std::vector<Key>, std::less<>> tracks;

    bool operator==(const KeyframeTracks&) const = default;

    // The keys of a track; empty without one. Valid until the tracks change.
    std::span<const Key> keys(std::string_view name) const;

    // Changes the key at `time` (negative: 0), or adds one. Without `ease`, an existing key keeps
    // its ease and a new key is smooth.
    void set(std::string_view name, double time, float value, std::optional<Ease> ease = {});
    // Changes the ease of the key at `time`, if there is one.
    void setEase(std::string_view name, double time, Ease ease);
    // Removes every key at `time`, and the track if it was the last key.
    void remove(std::string_view name, double time);
    void clear(std::string_view name); // removes the track

    bool isEmpty() const;    // no track has a key
    double lastTime() const; // of the last key, in seconds; 0 without keys

    // The value of a track at `time` in seconds; nothing without a track or keys.
    std::optional<float> value(std::string_view name, double time) const;
    // `base`, overwritten by the values at `time` of all tracks that have keys.
    ParamValues values(double time, ParamValues base) const;
    // The tracks of declared parameters only, each value clamped to its range.
    KeyframeTracks fitted(std::span<const ParamDecl> params) const;

    // The JSON form: {"tracks":{"speed":[{"time":0,"value":1,"ease":"smooth"}]}}. All members are
    // required, others are ignored. Both throw DocumentError; encode() only for a number that is
    // not finite.
    std::string encode() const;
    static KeyframeTracks decode(std::string_view json);
};

// "linear", "smooth", "hold".
std::string_view rawValue(KeyframeTracks::Ease ease);
std::optional<KeyframeTracks::Ease> easeOf(std::string_view rawValue); // exactly

} // namespace tarnwick
