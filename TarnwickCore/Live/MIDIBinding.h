// The MIDI controller that sets a parameter.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tarnwick {

// A text that is not a valid binding. what() is one sentence with the reason.
struct MIDIBindingError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct MIDIBinding {
    std::uint8_t channel = 0;    // [0, 15], as in MIDI messages
    std::uint8_t controller = 0; // [0, 127]

    bool operator==(const MIDIBinding&) const = default;

    // "CC 74 · ch 1" for controller 74 of channel 0: people count channels from 1.
    std::string label() const;

    // The JSON form: {"channel":0,"controller":74}. Both are required integers in their ranges;
    // other members are ignored. decode() throws MIDIBindingError.
    std::string encode() const;
    static MIDIBinding decode(std::string_view json);
    static MIDIBinding decode(const nlohmann::json& document);
};

} // namespace tarnwick

template <> struct std::hash<tarnwick::MIDIBinding> {
    std::size_t operator()(const tarnwick::MIDIBinding& binding) const noexcept {
        return static_cast<std::size_t>(binding.channel) << 8 | binding.controller;
    }
};
