// What the receiver of our OSC messages knows of the sliders, so that neither side repeats the
// other's moves.
#pragma once

#include "TarnwickCore/Live/OSC.h"
#include "player/Control/Binding.h"

#include <deque>
#include <map>
#include <span>
#include <string>
#include <vector>

namespace tarnwick::player {

// One thread at a time. Positions are in the range of the parameter, [0, 1]; times are host
// seconds.
class OSCPeer {
  public:
    static constexpr double echoTime = 0.5; // seconds in which a sent position may come back

    // "/tarnwick/NAME POSITION" for each parameter whose position the peer does not know.
    std::vector<OSC::Message> changes(std::span<const ParamDecl> params, const ParamValues& values,
                                      double time);
    // The peer itself sent the position.
    void knows(const std::string& name, float position);
    // Whether a position that arrived is one that was sent lately: some peers answer each message
    // with the same, and an old answer would move the slider back.
    bool isEcho(const std::string& name, float position, double time) const;
    // Another episode is played, or another peer listens.
    void forget();

  private:
    struct Sent {
        std::string name;
        float position;
        double time;
    };

    std::map<std::string, float> known_;
    std::deque<Sent> sent_; // of the last echoTime, the oldest first
};

} // namespace tarnwick::player
