// Decides what a message of a control moves.
#pragma once

#include "player/Control/Binding.h"

#include <map>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace tarnwick::player {

// The episode that is played.
struct PlayedEpisode {
    std::string title;
    std::span<const ParamDecl> params;
    ParamValues values; // the present one of each parameter
};

struct ParameterMove {
    std::string name;
    float value = 0; // [min, max] of the parameter

    bool operator==(const ParameterMove&) const = default;
};

struct TransportMove {
    TransportAction action{};
    double number = 0; // of speed and time

    bool operator==(const TransportMove&) const = default;
};

struct ControlMove {
    std::variant<ParameterMove, TransportMove> change;
    bool waitsForPickup = false; // not to be applied yet

    bool operator==(const ControlMove&) const = default;
};

// One thread at a time.
class ControlRouter {
  public:
    // The control of a binding with pickup moves a parameter only once it has reached its value.
    // This is for bindings without a choice of their own.
    void setPickup(bool isOn) { hasPickup_ = isOn; }
    void setBindings(std::vector<Binding> bindings) { bindings_ = std::move(bindings); }

    // The moves of a message: those of its bindings, of which the ones for this episode replace
    // the general ones. Without a binding, that of an OSC message to an address of our own:
    //
    // - /tarnwick/NAME and /tarnwick/NAME/value (ControlMapping);
    // - /tarnwick/transport/play, pause, toggle, restart: a press; the number 0 is a release;
    // - /tarnwick/transport/step FRAMES, time SECONDS, speed NUMBER.
    std::vector<ControlMove> route(const ControlArrival& arrival, const PlayedEpisode& episode);

  private:
    std::vector<const Binding*> bindingsOf(const ControlArrival& arrival,
                                           const PlayedEpisode& episode) const;
    std::optional<ControlMove> move(const Binding& binding, const ControlArrival& arrival,
                                    const PlayedEpisode& episode);
    static std::optional<ControlMove> step(const Binding& binding, int steps,
                                           const PlayedEpisode& episode);
    bool waitsForPickup(const Binding& binding, const ParamDecl& param, float position,
                        const PlayedEpisode& episode) const;
    bool isPressed(const Binding& binding, const ControlArrival& arrival, float position);
    bool isPickedUp(const Binding& binding, const ParamDecl& param, float last, float position,
                    const PlayedEpisode& episode) const;

    std::vector<Binding> bindings_;
    bool hasPickup_ = false;
    std::map<ControlSource, float> positions_; // the last of each bound control
};

} // namespace tarnwick::player
