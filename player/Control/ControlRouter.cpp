#include "player/Control/ControlRouter.h"

#include "TarnwickCore/Live/ControlMapping.h"

#include <algorithm>
#include <cmath>

namespace tarnwick::player {
namespace {

constexpr float pressPosition = 0.5f; // a press is at least here
// A control has reached a value at this distance: the step of a controller of 7 bits and a half.
constexpr float pickupDistance = 1.5f / 127;
constexpr float fastest = 2; // the speed of playing at the end of a bound control

constexpr std::string_view transportPrefix = "/tarnwick/transport/";

std::optional<TransportMove> pressMove(std::string_view word, bool isPressed) {
    const auto names = transportNames();
    const auto found = std::ranges::find(names, word, &CaseName<TransportAction>::word);
    if (found == names.end() || found->one == TransportAction::speed || !isPressed)
        return std::nullopt;
    return TransportMove{found->one};
}

// The move of an OSC message to an address of the transport.
std::optional<TransportMove> transportMove(const OSCControl& control,
                                           std::span<const float> numbers) {
    std::string_view word = control.address;
    if (!word.starts_with(transportPrefix))
        return std::nullopt;
    word.remove_prefix(transportPrefix.size());
    const bool isFinite = numbers.empty() || std::isfinite(numbers[0]);
    if (!isFinite)
        return std::nullopt;
    if (numbers.empty())
        return pressMove(word, true);
    if (word == "time")
        return TransportMove{TransportAction::time, numbers[0]};
    if (word == "speed")
        return TransportMove{TransportAction::speed, numbers[0]};
    if (word == "step" && numbers[0] != 0)
        return TransportMove{numbers[0] > 0 ? TransportAction::stepForward
                                            : TransportAction::stepBack,
                             std::abs(numbers[0])};
    return pressMove(word, numbers[0] != 0);
}

std::optional<ControlMove> ownMove(const ControlArrival& arrival, const PlayedEpisode& episode) {
    const auto* osc = std::get_if<OSCControl>(&arrival.source);
    if (osc == nullptr)
        return std::nullopt;
    if (const auto move = transportMove(*osc, arrival.numbers))
        return ControlMove{*move};
    const auto value =
        ControlMapping::value(OSC::Message{osc->address, arrival.numbers}, episode.params);
    if (!value)
        return std::nullopt;
    return ControlMove{ParameterMove{value->name, value->value}};
}

// A button or pad jumps to its values, and a bend returns to its middle; a knob or fader has a
// place that it can be away from. The faders of some devices send bends.
bool hasPlace(const Binding& binding) {
    using enum MIDIControl::Kind;
    const auto* midi = std::get_if<MIDIControl>(&binding.source);
    if (midi == nullptr || binding.button != ButtonMode::follow)
        return false;
    return midi->kind == controller || midi->kind == controller14 || midi->kind == registered ||
           midi->kind == nonRegistered || (midi->kind == pitchBend && binding.hasPickup == true);
}

float presentPosition(const ParamDecl& param, const PlayedEpisode& episode) {
    const auto found = episode.values.find(param.name);
    return positionOf(param, found == episode.values.end() ? param.defaultValue : found->second);
}

bool isFrom(const Binding& binding, const ControlSource& source) {
    const auto* mine = std::get_if<OSCControl>(&binding.source);
    const auto* theirs = std::get_if<OSCControl>(&source);
    return mine != nullptr && theirs != nullptr ? mine->address == theirs->address
                                                : binding.source == source;
}

} // namespace

std::vector<const Binding*> ControlRouter::bindingsOf(const ControlArrival& arrival,
                                                      const PlayedEpisode& episode) const {
    std::vector<const Binding*> own, general;
    for (const Binding& binding : bindings_) {
        if (!isFrom(binding, arrival.source))
            continue;
        if (binding.episode.empty())
            general.push_back(&binding);
        else if (binding.episode == episode.title)
            own.push_back(&binding);
    }
    return own.empty() ? general : own;
}

std::vector<ControlMove> ControlRouter::route(const ControlArrival& arrival,
                                              const PlayedEpisode& episode) {
    std::vector<ControlMove> moves;
    const auto bound = bindingsOf(arrival, episode);
    for (const Binding* binding : bound)
        if (auto made = move(*binding, arrival, episode))
            moves.push_back(*std::move(made));
    for (const Binding* binding : bound) // after all of them compared with the last position
        if (const auto position = inputPosition(*binding, arrival))
            positions_[binding->source] = *position;
    if (auto own = bound.empty() ? ownMove(arrival, episode) : std::nullopt)
        moves.push_back(*std::move(own));
    return moves;
}

std::optional<ControlMove> ControlRouter::move(const Binding& binding,
                                               const ControlArrival& arrival,
                                               const PlayedEpisode& episode) {
    if (isRelative(binding))
        return step(binding, stepsOf(binding.encoding, arrival.values), episode);
    const auto position = inputPosition(binding, arrival);
    if (!position)
        return std::nullopt;
    if (const auto* action = std::get_if<TransportAction>(&binding.target)) {
        if (*action == TransportAction::speed)
            return ControlMove{
                TransportMove{*action, double{fastest} * outputPosition(binding, *position)}};
        if (!isPressed(binding, arrival, *position))
            return std::nullopt;
        return ControlMove{TransportMove{*action}};
    }
    const ParamDecl* param = paramOf(binding.target, episode.params);
    if (param == nullptr)
        return std::nullopt;
    if (binding.button == ButtonMode::toggle) {
        if (!isPressed(binding, arrival, *position))
            return std::nullopt;
        const float present = presentPosition(*param, episode);
        const auto [first, second] = binding.output;
        const bool isFirst = std::abs(present - first) <= std::abs(present - second);
        return ControlMove{ParameterMove{param->name, valueAt(*param, isFirst ? second : first)}};
    }
    return ControlMove{
        ParameterMove{param->name, valueAt(*param, outputPosition(binding, *position))},
        waitsForPickup(binding, *param, *position, episode)};
}

// The steps of an encoder: from the present value, within the ends of the binding. They step the
// frames forward or back; up is a press of the other actions.
std::optional<ControlMove> ControlRouter::step(const Binding& binding, int steps,
                                               const PlayedEpisode& episode) {
    if (steps == 0)
        return std::nullopt;
    if (const auto* action = std::get_if<TransportAction>(&binding.target)) {
        const bool isJog =
            *action == TransportAction::stepForward || *action == TransportAction::stepBack;
        if (!isJog)
            return steps > 0 ? std::optional(ControlMove{TransportMove{*action}}) : std::nullopt;
        const bool isForward = (*action == TransportAction::stepForward) == (steps > 0);
        return ControlMove{
            TransportMove{isForward ? TransportAction::stepForward : TransportAction::stepBack,
                          static_cast<double>(std::abs(steps))}};
    }
    const ParamDecl* param = paramOf(binding.target, episode.params);
    if (param == nullptr)
        return std::nullopt;
    const auto [low, high] = std::minmax(binding.output[0], binding.output[1]);
    const float direction = binding.output[0] <= binding.output[1] ? 1.0f : -1.0f;
    const float next =
        presentPosition(*param, episode) + direction * binding.step * static_cast<float>(steps);
    return ControlMove{ParameterMove{param->name, valueAt(*param, std::clamp(next, low, high))}};
}

bool ControlRouter::waitsForPickup(const Binding& binding, const ParamDecl& param, float position,
                                   const PlayedEpisode& episode) const {
    if (!binding.hasPickup.value_or(hasPickup_) || !hasPlace(binding))
        return false;
    const auto last = positions_.find(binding.source);
    const float before = last == positions_.end() ? position : last->second;
    return !isPickedUp(binding, param, before, position, episode);
}

// A press is a step from below the middle.
bool ControlRouter::isPressed(const Binding& binding, const ControlArrival& arrival,
                              float position) {
    if (isPressOnly(arrival))
        return true;
    const auto last = positions_.find(binding.source);
    return position >= pressPosition && (last == positions_.end() || last->second < pressPosition);
}

// Between its last position and this one, the control passed the present value or came near it.
bool ControlRouter::isPickedUp(const Binding& binding, const ParamDecl& param, float last,
                               float position, const PlayedEpisode& episode) const {
    const float present = presentPosition(param, episode);
    const float before = outputPosition(binding, last) - present;
    const float now = outputPosition(binding, position) - present;
    return before * now < 0 || std::min(std::abs(before), std::abs(now)) <= pickupDistance;
}

} // namespace tarnwick::player
