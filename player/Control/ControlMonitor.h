// The list of the messages that arrived and of what they moved.
#pragma once

#include "player/Control/ControlRouter.h"

#include <cstdint>
#include <deque>
#include <string>

namespace tarnwick::player {

struct MonitorRow {
    ControlArrival arrival;
    std::vector<ControlMove> moves;
};

// One thread at a time.
class ControlMonitor {
  public:
    static constexpr std::size_t mostRows = 1000; // the oldest are dropped

    // Ignored, but counted, while paused.
    void add(MonitorRow row);
    void setPaused(bool isPaused) { isPaused_ = isPaused; }
    bool isPaused() const { return isPaused_; }
    void clear();

    const std::deque<MonitorRow>& rows() const { return rows_; } // the newest last
    std::uint64_t messages() const { return messages_; }         // since the start or clear()
    std::uint64_t revision() const { return revision_; }         // counts the changes

  private:
    std::deque<MonitorRow> rows_;
    std::uint64_t messages_ = 0, revision_ = 0;
    bool isPaused_ = false;
};

// "/tarnwick/speed 0.5", "CC 74 · ch 1 0.504 ×12": with the numbers, and the count if several
// messages are one row.
std::string messageText(const ControlArrival& arrival);
// "speed", "speed (waits for pickup), Restart"; "—" if nothing moved.
std::string targetText(const std::vector<ControlMove>& moves);
// The values of these, in the same order.
std::string valueText(const std::vector<ControlMove>& moves);

} // namespace tarnwick::player
