// Receives OSC messages over UDP, on a thread of its own.
#pragma once

#include "player/Control/ControlSource.h"
#include "player/Control/UDPSocket.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace tarnwick::player {

// A port cannot be opened. what() is one sentence.
struct OSCPortError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

class OSCReceiver {
  public:
    using Listener = std::function<void(ControlArrival)>;

    // `address` is one of IPv4: loopbackAddress and everyAddress (NetworkAddresses.h) include the
    // same of IPv6, which is left out on a machine without it. Port 0 is a free port. `listener` is
    // called on the receiver's thread for each message. Messages of a bundle take effect when it
    // arrives: time tags are ignored. Throws OSCPortError.
    static std::unique_ptr<OSCReceiver> make(const std::string& address, std::uint16_t port,
                                             Listener listener);
    ~OSCReceiver();
    OSCReceiver(const OSCReceiver&) = delete;
    OSCReceiver& operator=(const OSCReceiver&) = delete;

    std::uint16_t port() const { return port_; }

  private:
    OSCReceiver(std::vector<UDPSocket> sockets, std::uint16_t port, Listener listener);

    void run();
    void readAll(const UDPSocket& socket, std::vector<std::uint8_t>& packet);

    std::vector<UDPSocket> sockets_;
    std::uint16_t port_;
    Listener listener_;
    int waker_; // readable at the end
    std::atomic<bool> isOver_ = false;
    std::thread thread_;
};

} // namespace tarnwick::player
