// A control bound to a parameter or to the transport, and how its positions become values.
#pragma once

#include "TarnwickCore/Params.h"
#include "player/Control/ControlSource.h"

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace tarnwick::player {

// A parameter by its name.
struct ParameterTarget {
    std::string name;

    bool operator==(const ParameterTarget&) const = default;
};

// A parameter by its place, whatever its name: 1 is the first of the episode.
struct SliderTarget {
    int number = 1;

    bool operator==(const SliderTarget&) const = default;
};

enum class TransportAction : std::uint8_t {
    toggle, // between playing and paused
    play,
    pause,
    restart,
    stepForward,
    stepBack,
    speed, // a number; the others are presses
    time,  // a number, in seconds; by OSC only
};

using ControlTarget = std::variant<ParameterTarget, SliderTarget, TransportAction>;

// "speed", "Slider 3", "Play or pause".
std::string labelOf(const ControlTarget& target);

enum class ControlCurve : std::uint8_t { linear, slowStart, fastStart, smooth };
enum class ButtonMode : std::uint8_t {
    follow, // the value follows the control: back to the first end at a release
    toggle, // each press goes to the other end
};

// How the values of a controller of 7 bits count. Encoders without an end send steps.
enum class MIDIEncoding : std::uint8_t {
    absolute,
    twosComplement, // 1 to 63: up; 127 to 64: down, 127 is one step
    signedBit,      // 1 to 63: up; 65 to 127: down, 65 is one step
    binaryOffset,   // 65 to 127: up, 65 is one step; 63 to 0: down
};

struct Binding {
    ControlSource source;
    ControlTarget target;
    std::string episode{};            // the title of the only one; empty: every episode
    std::array<float, 2> input{0, 1}; // OSC: the numbers at both ends of the control
    // The positions of the parameter's range at both ends of the control, [0, 1]; in either order.
    std::array<float, 2> output{0, 1};
    ControlCurve curve = ControlCurve::linear;
    ButtonMode button = ButtonMode::follow;
    MIDIEncoding encoding = MIDIEncoding::absolute;
    float step = 1.0f / 127;         // of an encoder, in the range of the parameter, (0, 1]
    std::optional<bool> hasPickup{}; // absent: as chosen for all bindings

    bool operator==(const Binding&) const = default;
};

// The words of the bindings' file and their labels.
template <typename Case> struct CaseName {
    Case one;
    std::string_view word, label;
};
std::span<const CaseName<TransportAction>> transportNames(); // those that can be bound
std::span<const CaseName<ControlCurve>> curveNames();
std::span<const CaseName<ButtonMode>> buttonNames();
std::span<const CaseName<MIDIControl::Kind>> kindNames();
std::span<const CaseName<MIDIEncoding>> encodingNames();

// The position of the control, [0, 1], within the input of the binding; a press without a number
// is 1. Nothing if the message has no such number, or one that is not finite.
std::optional<float> inputPosition(const Binding& binding, const ControlArrival& arrival);
// The sum of the steps, up if positive. 0 if the values are absolute.
int stepsOf(MIDIEncoding encoding, std::span<const std::uint8_t> values);
// Whether the binding takes steps.
bool isRelative(const Binding& binding);
// The position in the range of the parameter, [0, 1], for an input position.
float outputPosition(const Binding& binding, float input);

// The value at a position in the range, clamped, and the reverse.
float valueAt(const ParamDecl& param, float position);
float positionOf(const ParamDecl& param, float value);

// The parameter that a target names; null without one.
const ParamDecl* paramOf(const ControlTarget& target, std::span<const ParamDecl> params);

// The binding that a learning target makes of a message; nothing for a release.
std::optional<Binding> learnedFrom(const ControlArrival& arrival, ControlTarget target,
                                   std::string episode);
// Adds a binding. It replaces those of the same kind of control for its target and episode.
void addLearned(std::vector<Binding>& bindings, Binding learned);

} // namespace tarnwick::player
