// The signals that ask a program to end: SIGINT, SIGTERM and SIGHUP.
//
// The program ends within two seconds of a signal, even while it waits for a driver that draws for
// a minute; within four seconds if the file system does not answer. It leaves no unfinished file
// behind, unless the file system does not answer. A thread of its own hears the signals, so that it
// does not matter which of the others waits in the kernel. The signal itself ends the program, so
// that its exit status is the conventional one and a loop of a shell around it ends too.
#pragma once

#include <atomic>
#include <thread>

namespace tarnwick {

// A process has at most one; main() makes it first. Its thread ends the process when a signal
// arrives: at once, or within 1.5 s while a HeldSignals exists. The thread removes the files listed
// by Unfinished.h and clears the last line of the terminal. No destructor runs. Signals that are
// ignored when the process starts remain ignored.
class EndSignals {
  public:
    EndSignals();  // installs the handlers; a violation if the process has one already
    ~EndSignals(); // restores the handlers that the process had before
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

    // Ends the process if a signal has arrived and was answered (HeldSignals::answer).
    void endIfArrived() const;

  private:
    void watch() const;

    std::atomic<bool> isOver_ = false;
    int pending_ = -1; // a signalfd: readable while no thread has run the handler of a signal
    std::thread watcher_;
};

// Ends the process with `status` within 1.5 s, even if a destructor blocks. A signal that has
// arrived and was answered no longer ends it. The caller flushes buffered output. Does nothing
// without an EndSignals. May be called from any thread.
void endSoon(int status);

// A signal that arrives while some exist ends the process in the destructor of the last one, or
// after 1.5 s. Does nothing without an EndSignals. May be used on any thread.
class HeldSignals {
  public:
    HeldSignals();
    // Ends the process if a signal has arrived, unless another one exists or has answered it.
    ~HeldSignals();
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;

    bool arrived() const;   // a signal has arrived and is held
    int descriptor() const; // readable once a signal has arrived; -1 without an EndSignals
    // The program ends by itself: it reports the end and uses the rest of the 1.5 s to clean up.
    void answer() { isAnswered_ = true; }

  private:
    bool isAnswered_ = false;
};

} // namespace tarnwick
