// The signals that ask a program to end, as something to wait for.
#pragma once

namespace tarnwick {

// While it lives SIGTERM, SIGINT and SIGHUP do not end the process but arrive here. Make it before
// other threads start, since they inherit what is blocked; one at a time.
class EndSignals {
  public:
    EndSignals();
    ~EndSignals();
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

    int descriptor() const { return descriptor_; } // readable once one has arrived
    bool haveArrived() const;

  private:
    int descriptor_;
};

} // namespace tarnwick
