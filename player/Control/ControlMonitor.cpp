#include "player/Control/ControlMonitor.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr std::size_t mostNumbers = 8; // of a message that are shown

// With four significant digits. Values next to 0 are 0.
std::string number(double value) {
    if (std::abs(value) < 5e-5)
        value = 0;
    std::array<char, 32> text{};
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, 4);
    return {text.data(), end.ptr};
}

bool hasNumber(const TransportMove& move) {
    return move.number != 0 || move.action == TransportAction::speed ||
           move.action == TransportAction::time;
}

template <typename Text>
std::string joined(const std::vector<ControlMove>& moves, const Text& text) {
    std::string all;
    for (const ControlMove& move : moves) {
        const std::string one = text(move);
        if (!all.empty() && !one.empty())
            all += ", ";
        all += one;
    }
    return all;
}

} // namespace

void ControlMonitor::add(MonitorRow row) {
    messages_ += static_cast<std::uint64_t>(row.arrival.count);
    ++revision_;
    if (isPaused_)
        return;
    rows_.push_back(std::move(row));
    if (rows_.size() > mostRows)
        rows_.pop_front();
}

void ControlMonitor::clear() {
    rows_.clear();
    messages_ = 0;
    ++revision_;
}

std::string messageText(const ControlArrival& arrival) {
    std::string text = labelOf(arrival.source);
    if (std::holds_alternative<MIDIControl>(arrival.source) && !arrival.numbers.empty())
        text += ":";
    for (std::size_t index = 0; index < std::min(arrival.numbers.size(), mostNumbers); ++index)
        text += " " + number(static_cast<double>(arrival.numbers[index]));
    if (arrival.numbers.size() > mostNumbers)
        text += " ...";
    if (arrival.count > 1)
        text += " ×" + std::to_string(arrival.count);
    return text;
}

std::string targetText(const std::vector<ControlMove>& moves) {
    const std::string text = joined(moves, [](const ControlMove& move) {
        const auto* parameter = std::get_if<ParameterMove>(&move.change);
        const std::string name = parameter != nullptr
                                     ? parameter->name
                                     : labelOf(std::get<TransportMove>(move.change).action);
        return move.waitsForPickup ? name + " (waits for pickup)" : name;
    });
    return text.empty() ? "—" : text;
}

std::string valueText(const std::vector<ControlMove>& moves) {
    return joined(moves, [](const ControlMove& move) {
        if (const auto* parameter = std::get_if<ParameterMove>(&move.change))
            return number(static_cast<double>(parameter->value));
        const auto& transport = std::get<TransportMove>(move.change);
        return hasNumber(transport) ? number(transport.number) : std::string();
    });
}

} // namespace tarnwick::player
