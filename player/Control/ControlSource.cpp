#include "player/Control/ControlSource.h"

#include "TarnwickCore/Live/ControlMapping.h"
#include "TarnwickCore/Live/MIDIBinding.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace tarnwick::player {
namespace {

constexpr std::uint8_t firstModeMessage = 120; // MIDI 1.0, channel mode messages

std::string channelLabel(std::uint8_t channel) {
    return " · ch " + std::to_string(channel + 1);
}

std::string label(const OSCControl& control) {
    return control.argument == 0 ? control.address
                                 : control.address + " " + std::to_string(control.argument + 1);
}

std::string label(const MIDIControl& control) {
    using enum MIDIControl::Kind;
    switch (control.kind) {
    case controller:
        return MIDIBinding{.channel = control.channel,
                           .controller = static_cast<std::uint8_t>(control.number)}
            .label();
    case note:
        return "Note " + std::to_string(control.number) + channelLabel(control.channel);
    case pitchBend:
        return "Pitch bend" + channelLabel(control.channel);
    case program:
        return "Program " + std::to_string(control.number + 1) + channelLabel(control.channel);
    case pressure:
        return "Pressure" + channelLabel(control.channel);
    case controller14:
        return "CC " + std::to_string(control.number) + "+" + std::to_string(control.number + 32) +
               channelLabel(control.channel);
    case registered:
        return "RPN " + std::to_string(control.number) + channelLabel(control.channel);
    case nonRegistered:
        return "NRPN " + std::to_string(control.number) + channelLabel(control.channel);
    }
    return {};
}

ControlArrival arrivalOf(MIDIControl::Kind kind, std::uint8_t status, std::uint8_t number,
                         float position) {
    return {.source = MIDIControl{kind, static_cast<std::uint8_t>(status & 0x0F), number},
            .numbers = {position},
            .from = {}};
}

float position7(std::uint8_t value) {
    return static_cast<float>(value) / 127;
}

std::optional<ControlArrival> controllerArrival(std::uint8_t status, std::uint8_t number,
                                                std::uint8_t value) {
    const auto change = ControlMapping::controlChange(
        std::uint32_t{2} << 28 | std::uint32_t{status} << 16 | std::uint32_t{number} << 8 | value);
    if (!change || change->controller >= firstModeMessage)
        return std::nullopt;
    auto arrival = arrivalOf(MIDIControl::Kind::controller, status, change->controller,
                             position7(change->value));
    arrival.values = {change->value};
    return arrival;
}

// The bytes of a message with its status byte; 0: not a channel voice message that is used.
std::size_t lengthOf(std::uint8_t status) {
    switch (status >> 4) {
    case 0x8:
    case 0x9:
    case 0xB:
    case 0xE:
        return 3;
    case 0xC:
    case 0xD:
        return 2;
    default:
        return 0;
    }
}

} // namespace

bool hasNumber(MIDIControl::Kind kind) {
    return kind != MIDIControl::Kind::pitchBend && kind != MIDIControl::Kind::pressure;
}

std::uint16_t mostNumber(MIDIControl::Kind kind) {
    using enum MIDIControl::Kind;
    switch (kind) {
    case controller:
    case note:
    case program:
        return 127;
    case controller14:
        return 31;
    case registered:
    case nonRegistered:
        return 16383;
    case pitchBend:
    case pressure:
        return 0;
    }
    return 0;
}

std::string labelOf(const ControlSource& source) {
    return std::visit([](const auto& control) { return label(control); }, source);
}

bool isPressOnly(const ControlArrival& arrival) {
    const auto* midi = std::get_if<MIDIControl>(&arrival.source);
    return midi != nullptr ? midi->kind == MIDIControl::Kind::program : arrival.numbers.empty();
}

std::optional<ControlArrival> midiArrival(std::span<const std::uint8_t> bytes) {
    const std::size_t length = bytes.empty() ? 0 : lengthOf(bytes[0]);
    if (length == 0 || bytes.size() < length ||
        std::ranges::any_of(bytes.subspan(1, length - 1), [](auto byte) { return byte > 127; }))
        return std::nullopt;
    using enum MIDIControl::Kind;
    const std::uint8_t status = bytes[0], first = bytes[1], second = length > 2 ? bytes[2] : 0;
    switch (status >> 4) {
    case 0x8:
        return arrivalOf(note, status, first, 0);
    case 0x9: // velocity 0 is a release
        return arrivalOf(note, status, first, position7(second));
    case 0xB:
        return controllerArrival(status, first, second);
    case 0xC:
        return arrivalOf(program, status, first, 1);
    case 0xD:
        return arrivalOf(pressure, status, 0, position7(first));
    default:
        return arrivalOf(pitchBend, status, 0, static_cast<float>(second << 7 | first) / 16383);
    }
}

} // namespace tarnwick::player
