#include "player/Control/Learner.h"

#include <algorithm>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr double shortestWatch = 0.35; // seconds from the first message
constexpr double longestWatch = 3;
constexpr double quiet = 0.5; // an encoder is at rest
constexpr int nearZero = 8;   // steps of an encoder that is turned by hand
constexpr std::size_t fewestValues = 3;

bool isMIDIOf(const ControlSource& source, MIDIControl::Kind kind) {
    const auto* midi = std::get_if<MIDIControl>(&source);
    return midi != nullptr && midi->kind == kind;
}

bool isIn(int value, int first, int last) {
    return value >= first && value <= last;
}

} // namespace

MIDIEncoding encodingOf(const std::vector<std::uint8_t>& values) {
    const auto all = [&](const auto& isOne) { return std::ranges::all_of(values, isOne); };
    const bool repeats = std::ranges::adjacent_find(values) != values.end();
    if (values.size() < fewestValues || !repeats)
        return MIDIEncoding::absolute;
    const auto isUp = [](int value) { return isIn(value, 1, nearZero); };
    if (all([&](int value) { return isUp(value) || isIn(value, 128 - nearZero, 127); }))
        return MIDIEncoding::twosComplement;
    const bool hasUp = std::ranges::any_of(values, isUp);
    if (hasUp && all([&](int value) { return isUp(value) || isIn(value, 65, 64 + nearZero); }))
        return MIDIEncoding::signedBit;
    if (all([&](int value) { return value != 64 && isIn(value, 64 - nearZero, 64 + nearZero); }))
        return MIDIEncoding::binaryOffset;
    return MIDIEncoding::absolute;
}

void Learner::add(const ControlArrival& arrival) {
    using enum MIDIControl::Kind;
    const bool isWatched =
        isMIDIOf(arrival.source, controller) || isMIDIOf(arrival.source, controller14) ||
        isMIDIOf(arrival.source, registered) || isMIDIOf(arrival.source, nonRegistered);
    if (!isWatched) {
        if (!known_ && !first_)
            known_ = learnedFrom(arrival, target_, episode_);
        return;
    }
    first_ = first_.value_or(arrival.time);
    last_ = arrival.time;
    const auto [found, isNew] = arrivals_.try_emplace(arrival.source, arrival);
    if (isNew)
        order_.push_back(arrival.source);
    else
        found->second.values.insert(found->second.values.end(), arrival.values.begin(),
                                    arrival.values.end());
}

// Of several controls that one movement sent: a parameter number, else 14 bits, else the first.
std::optional<ControlArrival> Learner::best() const {
    using enum MIDIControl::Kind;
    for (const MIDIControl::Kind kind : {nonRegistered, registered, controller14})
        for (const ControlSource& source : order_)
            if (isMIDIOf(source, kind))
                return arrivals_.at(source);
    if (order_.empty())
        return std::nullopt;
    return arrivals_.at(order_.front());
}

std::optional<Binding> Learner::learned(double now) const {
    if (known_ || !first_ || now - *first_ < shortestWatch)
        return known_;
    const auto found = best();
    const MIDIEncoding encoding = found ? encodingOf(found->values) : MIDIEncoding::absolute;
    const bool isTurned = encoding != MIDIEncoding::absolute && now - last_ < quiet;
    if (!found || (isTurned && now - *first_ < longestWatch))
        return std::nullopt;
    auto binding = learnedFrom(*found, target_, episode_);
    if (binding)
        binding->encoding = encoding;
    return binding;
}

} // namespace tarnwick::player
