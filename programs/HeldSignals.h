// Keeps Ctrl-C from ending the program in the middle of something.
#pragma once

namespace tarnwick {

// While it lives SIGINT, SIGTERM and SIGHUP wait; one that came is raised when it goes. One at a
// time.
class HeldSignals {
  public:
    HeldSignals();
    ~HeldSignals();
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;

    bool arrived() const; // one that waits
    void forget();        // what arrived is not raised
};

} // namespace tarnwick
