// A socket that listens for connections.
#pragma once

#include <string>
#include <vector>

namespace tarnwick {

class Listener {
  public:
    // `address` is one of IPv4 or IPv6; `port` 0: any that is free. Throws ServeError.
    Listener(const std::string& address, int port);
    ~Listener();
    Listener(Listener&& other) noexcept;
    Listener& operator=(Listener&&) = delete;

    int socket() const { return socket_; }
    int port() const { return port_; }
    // A client's socket, which does not block; -1 without one.
    int accept() const;
    // The addresses under which this machine's interfaces are reached through it, as in a link:
    // "127.0.0.1", "[::1]".
    std::vector<std::string> reachedAs() const;

  private:
    std::string address_;
    int socket_ = -1, port_ = 0;
};

} // namespace tarnwick
