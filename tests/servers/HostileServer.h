// A server on a loopback address that sends any bytes at any speed.
#pragma once

#include "TarnwickPlatform/Net/URL.h"

#include <atomic>
#include <functional>
#include <list>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace tarnwick {

class HostileConnection {
  public:
    explicit HostileConnection(int socket) : socket_(socket) {}

    // Reads up to the empty line; "" if the client disconnects before.
    std::string readHead();
    // False if the client has disconnected.
    bool send(std::string_view bytes);
    // Closes without reading the rest, so that the client receives a reset.
    void reset();
    // Blocks until the client disconnects or the server ends.
    void waitForClient();

  private:
    int socket_;
};

class HostileServer {
  public:
    // Called for every connection, on its own thread; then the connection is closed.
    using Script = std::function<void(HostileConnection&)>;

    explicit HostileServer(Script script);
    // Reads the head of a request and sends `answer`.
    explicit HostileServer(std::string answer);
    ~HostileServer(); // closes all connections and waits for their scripts
    HostileServer(const HostileServer&) = delete;
    HostileServer& operator=(const HostileServer&) = delete;

    URL url(std::string_view target = "/") const; // "http://127.0.0.1:PORT" and `target`
    int port() const { return port_; }
    int connections() const { return count_; } // made until now
    int open();                                // now

  private:
    void accept();

    Script script_;
    int socket_, port_ = 0;
    std::atomic<int> count_ = 0;
    std::mutex mutex_; // of the next two
    std::list<int> open_;
    std::list<std::thread> threads_;
    std::thread acceptor_;
};

} // namespace tarnwick
