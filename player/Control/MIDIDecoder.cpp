#include "player/Control/MIDIDecoder.h"

#include <algorithm>
#include <utility>

namespace tarnwick::player {
namespace {

using Kind = MIDIControl::Kind;

constexpr std::uint16_t firstLow = 32, endOfLow = 64; // lower bits of controllers 0 to 31
constexpr double longestPair = 0.02;                  // seconds between both halves
constexpr std::size_t mostValues = 4096;

// Controllers of parameter numbers (MIDI 1.0, table 3).
constexpr std::uint16_t dataHigh = 6, dataLow = 38, increment = 96, decrement = 97;
constexpr std::uint16_t nonRegisteredLow = 98, nonRegisteredHigh = 99, registeredLow = 100,
                        registeredHigh = 101;
constexpr std::uint8_t none = 127; // in both halves of a number: no parameter

bool isData(std::uint16_t number) {
    return number == dataHigh || number == dataLow || number == increment || number == decrement;
}

} // namespace

// The lower bits count as 0 until they follow. Devices repeat the same upper bits before each
// change of the lower ones.
bool MIDIDecoder::Value::setHigh(std::uint8_t bits, double time) {
    const bool isSame = high == bits;
    high = bits;
    highTime = time;
    if (hasLow && isSame)
        return false;
    low = 0;
    return true;
}

float MIDIDecoder::Value::position() const {
    const int upper = high.value_or(0);
    return hasLow ? static_cast<float>(upper << 7 | low) / 16383 : static_cast<float>(upper) / 127;
}

std::vector<ControlArrival> MIDIDecoder::read(std::span<const std::uint8_t> bytes, double time) {
    const auto alone = midiArrival(bytes);
    if (!alone)
        return {};
    std::vector<ControlArrival> all{*alone};
    const auto& part = std::get<MIDIControl>(alone->source);
    if (part.kind != Kind::controller)
        return all;
    if (values_.size() > mostValues)
        values_.clear();
    const std::uint8_t value = alone->values.at(0);
    const auto add = [&](const MIDIControl& control) {
        all.push_back({.source = control, .numbers = {values_[control].position()}, .from = {}});
    };
    choose(part, value);
    if (changePair(part, value, time))
        add({Kind::controller14, part.channel, static_cast<std::uint16_t>(part.number % firstLow)});
    if (const auto parameter = chosen(part.channel);
        parameter && isData(part.number) && enter(*parameter, part.number, value, time))
        add(*parameter);
    return all;
}

// Whether a controller of 14 bits changes.
bool MIDIDecoder::changePair(const MIDIControl& part, std::uint8_t value, double time) {
    if (part.number >= endOfLow)
        return false;
    Value& pair = values_[{Kind::controller14, part.channel,
                           static_cast<std::uint16_t>(part.number % firstLow)}];
    if (part.number < firstLow)
        return pair.setHigh(value, time) && pair.hasLow;
    pair.hasLow |= pair.high && time - pair.highTime < longestPair;
    pair.low = value;
    return pair.hasLow;
}

void MIDIDecoder::choose(const MIDIControl& part, std::uint8_t value) {
    if (part.number < nonRegisteredLow || part.number > registeredHigh)
        return;
    Channel& channel = channels_.at(part.channel);
    const Kind kind = part.number <= nonRegisteredHigh ? Kind::nonRegistered : Kind::registered;
    if (std::exchange(channel.kind, kind) != kind)
        channel.high = channel.low = std::nullopt;
    const bool isHigh = part.number == nonRegisteredHigh || part.number == registeredHigh;
    (isHigh ? channel.high : channel.low) = value;
}

std::optional<MIDIControl> MIDIDecoder::chosen(std::uint8_t channel) const {
    const Channel& one = channels_.at(channel);
    if (!one.high || !one.low || (one.high == none && one.low == none))
        return std::nullopt;
    return MIDIControl{one.kind, channel, static_cast<std::uint16_t>(*one.high << 7 | *one.low)};
}

// Whether the parameter changes.
bool MIDIDecoder::enter(const MIDIControl& parameter, std::uint16_t part, std::uint8_t value,
                        double time) {
    Value& data = values_[parameter];
    if (part == dataHigh)
        return data.setHigh(value, time);
    if (part == dataLow) {
        data.low = value;
        data.hasLow = true;
        return data.high.has_value();
    }
    const int step = (part == increment ? 1 : -1) * (data.hasLow ? 1 : 128);
    const int next = std::clamp((data.high.value_or(0) << 7 | data.low) + step, 0, 16383);
    data.high = static_cast<std::uint8_t>(next >> 7);
    data.low = static_cast<std::uint8_t>(next & 127);
    return true;
}

} // namespace tarnwick::player
