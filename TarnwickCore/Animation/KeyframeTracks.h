// Parameters that change over time: for each name a list of keys, and how the value travels between
// them. A plain value.
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
        double time = 0; // seconds from the start of the animation; never negative when set()
        float value = 0;
        Ease ease = Ease::smooth; // of the last key never used

        bool operator==(const Key&) const = default;
    };

    // Two times closer than this, in seconds, are one.
    static constexpr double snap = 0.008333333333333333;

    // By name of the parameter. The operations below keep each list ascending in time, without two
    // keys closer than `snap`; a decoded list is as it was written.
    std::map<std::string, std::vector<Key>, std::less<>> tracks;

    bool operator==(const KeyframeTracks&) const = default;

    // Empty when there is no such track. Valid until the tracks change.
    std::span<const Key> keys(std::string_view name) const;

    // Changes the key at `time` (below 0 counts as 0), or adds one. Without an ease a key keeps the
    // one that it has, and a new key is smooth.
    void set(std::string_view name, double time, float value, std::optional<Ease> ease = {});
    // Changes the ease of the key at `time`, if there is one.
    void setEase(std::string_view name, double time, Ease ease);
    // Takes away every key at `time`, and the track with its last key.
    void remove(std::string_view name, double time);
    void clear(std::string_view name);

    bool isEmpty() const;    // no track holds a key
    double lastTime() const; // seconds; 0 without keys

    // Nothing when there is no such track or it has no keys.
    std::optional<float> value(std::string_view name, double time) const;
    // `base`, with the value of every track that has keys written over it.
    ParamValues values(double time, ParamValues base) const;
    // The tracks of declared parameters alone, each value brought into its declaration's range.
    KeyframeTracks fitted(std::span<const ParamDecl> params) const;

    // The JSON form: {"tracks":{"speed":[{"time":0,"value":1,"ease":"smooth"}]}}. All members are
    // required, others are ignored. Throw DocumentError; encode() only on numbers that JSON has no
    // form for.
    std::string encode() const;
    static KeyframeTracks decode(std::string_view json);
};

// "linear", "smooth", "hold".
std::string_view rawValue(KeyframeTracks::Ease ease);
std::optional<KeyframeTracks::Ease> easeOf(std::string_view rawValue);

} // namespace tarnwick
