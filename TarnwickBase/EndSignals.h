// The signals that ask a program to end: SIGINT, SIGTERM and SIGHUP.
//
// Whatever the program waits for, a driver that draws for a minute among it, it ends within two
// seconds of one, leaves nothing unfinished behind, and ends by the signal itself, so that its
// status is the conventional one and a shell's loop ends with it.
#pragma once

#include <atomic>
#include <thread>

namespace tarnwick {

// One for the process, which main() makes before all else. A thread of its own ends the process
// when a signal arrives: at once, or after 1.5 s at most while a HeldSignals lives. It removes
// what Unfinished.h lists and wipes the terminal's last line. No destructor runs. Signals that are
// ignored when the process starts stay ignored.
class EndSignals {
  public:
    EndSignals();
    ~EndSignals(); // a signal ends the process as if there had been none of these
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

    // Ends the process if a signal has arrived, which was answered.
    void endIfArrived() const;

  private:
    void watch() const;

    std::atomic<bool> isOver_ = false;
    std::thread watcher_;
};

// The process ends with this status within 1.5 s, whatever its destructors wait for. Buffered
// output is the caller's to flush. Without an EndSignals it does nothing. Any thread.
void endSoon(int status);

// While it lives a signal that arrives ends the process only when it goes, or after 1.5 s.
// Without an EndSignals it does nothing. Any thread.
class HeldSignals {
  public:
    HeldSignals();
    ~HeldSignals(); // ends the process if a signal has arrived, unless it was answered
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;

    bool arrived() const;   // one that waits
    int descriptor() const; // readable once one has arrived; -1 without an EndSignals
    // The program says itself that it ends, and has what is left of that time to do so.
    void answer() { isAnswered_ = true; }

  private:
    bool isAnswered_ = false;
};

} // namespace tarnwick
