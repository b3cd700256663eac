// Hears all MIDI ports, also those that are plugged in later.
#pragma once

#include "player/Control/ControlSource.h"
#include "player/Control/MIDIPorts.h"

#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace tarnwick::player {

struct MIDIPortState {
    std::string name;
    bool isOpen = false;
    std::string failure{}; // one sentence if it cannot be opened; empty otherwise

    bool operator==(const MIDIPortState&) const = default;
};

struct MIDIState {
    bool hasSystem = false; // false: the machine has no MIDI system
    std::vector<MIDIPortState> ports{};

    bool operator==(const MIDIState&) const = default;
};

// Looks for ports every second on a thread of its own.
class MIDIInput {
  public:
    struct Calls {
        std::function<std::unique_ptr<MIDIPorts>()> system; // systemMIDIPorts
        std::function<void(ControlArrival)> arrived;        // on threads of the connections
        std::function<void(MIDIState)> changed;             // on the thread of this
    };

    explicit MIDIInput(Calls calls, double interval = 1); // seconds between two looks
    ~MIDIInput();
    MIDIInput(const MIDIInput&) = delete;
    MIDIInput& operator=(const MIDIInput&) = delete;

    // The names of ports that are closed. Any thread.
    void ignore(std::set<std::string> names);

  private:
    void run();
    MIDIState look();
    MIDIPortState opened(const std::string& name);

    Calls calls_;
    double interval_;
    std::unique_ptr<MIDIPorts> system_;                                  // its own thread's
    std::map<std::string, std::unique_ptr<MIDIConnection>> connections_; // its own thread's
    std::mutex mutex_;                                                   // guards the rest
    std::condition_variable wake_;
    std::set<std::string> ignored_;
    bool isOver_ = false, hasNews_ = false;
    std::thread thread_;
};

} // namespace tarnwick::player
