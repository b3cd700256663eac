#include "player/Control/OSCPeer.h"

#include "TarnwickCore/Live/ControlMapping.h"

#include <algorithm>
#include <cmath>

namespace tarnwick::player {
namespace {

constexpr float sameDistance = 1e-5f; // of positions; peers round them

bool isSame(float one, float other) {
    return std::abs(one - other) <= sameDistance;
}

} // namespace

std::vector<OSC::Message> OSCPeer::changes(std::span<const ParamDecl> params,
                                           const ParamValues& values, double time) {
    while (!sent_.empty() && sent_.front().time < time - echoTime)
        sent_.pop_front();
    std::vector<OSC::Message> messages;
    for (const ParamDecl& param : params) {
        const auto value = values.find(param.name);
        const float position =
            positionOf(param, value == values.end() ? param.defaultValue : value->second);
        const auto known = known_.find(param.name);
        if (known != known_.end() && isSame(known->second, position))
            continue;
        known_.insert_or_assign(param.name, position);
        sent_.push_back({param.name, position, time});
        messages.push_back({std::string(ControlMapping::oscPrefix) + param.name, {position}});
    }
    return messages;
}

void OSCPeer::knows(const std::string& name, float position) {
    known_.insert_or_assign(name, position);
}

bool OSCPeer::isEcho(const std::string& name, float position, double time) const {
    return std::ranges::any_of(sent_, [&](const Sent& sent) {
        return sent.time >= time - echoTime && sent.name == name && isSame(sent.position, position);
    });
}

void OSCPeer::forget() {
    known_.clear();
    sent_.clear();
}

} // namespace tarnwick::player
