// Sends OSC messages over UDP, on a thread of its own.
#pragma once

#include "TarnwickCore/Live/OSC.h"
#include "player/Control/UDPSocket.h"

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace tarnwick::player {

// Sends the newest message of each address at most 60 times per second. Any thread.
class OSCSender {
  public:
    static constexpr double interval = 1.0 / 60; // seconds between two messages of an address

    // `host` is a name or an address, looked up on the sender's thread. `fail` is called once, on
    // that thread, with one sentence if it is not found.
    OSCSender(std::string host, std::uint16_t port, std::function<void(std::string)> fail);
    ~OSCSender(); // messages that wait are dropped
    OSCSender(const OSCSender&) = delete;
    OSCSender& operator=(const OSCSender&) = delete;

    void send(std::vector<OSC::Message> messages);
    // Whether packets from a numeric address come from the host; false until it is looked up.
    bool isHost(const std::string& address) const;

  private:
    struct Shared;

    std::shared_ptr<Shared> shared_; // with the thread, which may outlive this while it looks up
};

} // namespace tarnwick::player
