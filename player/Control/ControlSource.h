// The controls that play an episode from outside: numbers of OSC messages and controls of MIDI
// devices.
#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

namespace tarnwick::player {

struct OSCControl {
    std::string address;
    std::uint32_t argument = 0; // index among the numbers of the message

    auto operator<=>(const OSCControl&) const = default;
};

struct MIDIControl {
    enum class Kind : std::uint8_t {
        controller,
        note,
        pitchBend,
        program,
        pressure,
        controller14,  // a controller of 14 bits: number and number + 32
        registered,    // a registered parameter number (RPN)
        nonRegistered, // a non-registered parameter number (NRPN)
    };

    Kind kind = Kind::controller;
    std::uint8_t channel = 0; // [0, 15]
    std::uint16_t number = 0; // [0, mostNumber(kind)]

    auto operator<=>(const MIDIControl&) const = default;
};

// Whether controls of the kind have a number.
bool hasNumber(MIDIControl::Kind kind);
// The highest number of the kind; 0 for kinds without numbers.
std::uint16_t mostNumber(MIDIControl::Kind kind);

using ControlSource = std::variant<OSCControl, MIDIControl>;

// "/fader 2" for the second number, "CC 74 · ch 1", "Note 60 · ch 1": people count from 1.
std::string labelOf(const ControlSource& source);

// A message of a control, or the newest one of several.
struct ControlArrival {
    ControlSource source;       // of OSC: with argument 0, for all numbers of the message
    std::vector<float> numbers; // of MIDI: the position, [0, 1]; of OSC: any, also none
    std::string from;           // the host, or the name of the MIDI port
    double time = 0;            // host seconds
    int count = 1;              // messages
    // Of a MIDI controller: the value of each message, [0, 127], the newest last; at most
    // ControlMail::mostValues.
    std::vector<std::uint8_t> values{};

    bool operator==(const ControlArrival&) const = default;
};

// Whether each message of the control is a press without a release: a program change, or a message
// without numbers.
bool isPressOnly(const ControlArrival& arrival);

// One MIDI 1.0 channel voice message with its status byte. Nothing for other messages, for channel
// mode messages (controllers 120 to 127) and for invalid ones. Accepts any bytes.
std::optional<ControlArrival> midiArrival(std::span<const std::uint8_t> bytes);

} // namespace tarnwick::player
