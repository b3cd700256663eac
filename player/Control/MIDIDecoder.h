// Composes the messages of a MIDI port: controllers of 14 bits and parameter numbers.
#pragma once

#include "player/Control/ControlSource.h"

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <vector>

namespace tarnwick::player {

// For one port. One thread at a time.
class MIDIDecoder {
  public:
    // The arrivals of one message with its status byte: that of the message alone, and then those
    // of the controls that it is a part of (MIDI 1.0, control changes):
    //
    // - a controller of 14 bits, once a value of controllers 32 to 63 followed one of its upper
    //   seven bits within 20 ms; devices use these numbers for other controls too;
    // - the parameter that controllers 98 to 101 chose, changed by controllers 6, 38, 96 and 97.
    //
    // `time` is in host seconds. Accepts any bytes.
    std::vector<ControlArrival> read(std::span<const std::uint8_t> bytes, double time);

  private:
    // Upper and lower seven bits.
    struct Value {
        std::optional<std::uint8_t> high;
        std::uint8_t low = 0;
        double highTime = 0; // of the upper bits
        bool hasLow = false; // the device sends the lower bits

        // False if nothing changes before the lower bits follow.
        bool setHigh(std::uint8_t bits, double time);
        float position() const; // [0, 1]
    };
    struct Channel {
        std::optional<std::uint8_t> high, low; // of the parameter's number
        MIDIControl::Kind kind = MIDIControl::Kind::registered;
    };

    bool changePair(const MIDIControl& part, std::uint8_t value, double time);
    void choose(const MIDIControl& part, std::uint8_t value);
    std::optional<MIDIControl> chosen(std::uint8_t channel) const;
    bool enter(const MIDIControl& parameter, std::uint16_t part, std::uint8_t value, double time);

    std::array<Channel, 16> channels_{};
    std::map<MIDIControl, Value> values_; // of the composed controls
};

} // namespace tarnwick::player
