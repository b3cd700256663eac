// Finds out which control somebody moves, and how it counts.
#pragma once

#include "player/Control/Binding.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick::player {

// A message of OSC, a key and a pad are known at once. A MIDI controller is watched for a moment:
// it may be a half of a control of 14 bits, choose a parameter number, or be an encoder that sends
// steps. An encoder is known from values near its zero that repeat, which a knob with an end does
// not send; in which way it counts is known once it is turned both ways.
class Learner {
  public:
    Learner(ControlTarget target, std::string episode)
        : target_(std::move(target)), episode_(std::move(episode)) {}

    const ControlTarget& target() const { return target_; }
    void add(const ControlArrival& arrival);
    // The binding, once it is known at a moment of the host clock.
    std::optional<Binding> learned(double now) const;
    bool isWatching() const { return first_.has_value(); } // learned() changes without messages

  private:
    std::optional<ControlArrival> best() const;

    ControlTarget target_;
    std::string episode_;
    std::optional<double> first_; // host seconds of the first message
    double last_ = 0;
    std::optional<Binding> known_;
    std::map<ControlSource, ControlArrival> arrivals_; // with all values
    std::vector<ControlSource> order_;                 // of the first messages
};

// In which way values count as steps; absolute if they do not.
MIDIEncoding encodingOf(const std::vector<std::uint8_t>& values);

} // namespace tarnwick::player
