// What OSC messages and MIDI controllers mean for parameters.
#pragma once

#include "TarnwickCore/Live/OSC.h"
#include "TarnwickCore/Params.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tarnwick {

struct ControlMapping {
    static constexpr std::string_view oscPrefix = "/tarnwick/";

    struct NamedValue {
        std::string name;
        float value = 0; // [min, max] of the parameter

        bool operator==(const NamedValue&) const = default;
    };

    // What a message sets: /tarnwick/NAME places the parameter in its range by a number from 0 to
    // 1, /tarnwick/NAME/value gives the value itself; both are clamped, numbers after the first do
    // not count. Nothing without a finite first number or for a name that is not declared.
    //
    // A place is min + place * (max - min) in single precision: 0 is min to the bit, 1 is max or
    // the float below it. A range that is infinite at both ends has no places above 0: the default
    // stands for all.
    static std::optional<NamedValue> value(const OSC::Message& message,
                                           std::span<const ParamDecl> params);

    // The value at which a controller puts a parameter: min at 0, max at 127 and above, both to the
    // bit.
    static float value(std::uint8_t cc, const ParamDecl& param);

    struct ControlChange {
        std::uint8_t channel = 0;    // [0, 15]
        std::uint8_t controller = 0; // [0, 127]
        std::uint8_t value = 0;      // [0, 127]

        bool operator==(const ControlChange&) const = default;
    };

    // Reads a word of the Universal MIDI Packet format: a control change of MIDI 1.0 in any group
    // (message type 2, status B). Nothing for any other.
    static std::optional<ControlChange> controlChange(std::uint32_t ump);
};

} // namespace tarnwick
