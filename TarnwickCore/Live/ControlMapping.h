// Maps OSC messages and MIDI controllers to parameters.
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

    // The parameter value that a message sets. /tarnwick/NAME has a position, [0, 1], in the range
    // of the parameter. /tarnwick/NAME/value has the value itself. Both are clamped; numbers after
    // the first are ignored. Nothing without a finite first number, or if the name is not declared.
    //
    // The value at a position is min + position * (max - min) in single precision: 0 gives exactly
    // min, 1 gives max or the float below it. If the range is infinite at both ends, every position
    // above 0 gives the default.
    static std::optional<NamedValue> value(const OSC::Message& message,
                                           std::span<const ParamDecl> params);

    // That value. A position below 0 counts as 0.
    static float valueAt(float position, const ParamDecl& param);

    // The value for a controller value `cc`: exactly min at 0, exactly max at 127 and above.
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
