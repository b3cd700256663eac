// A server on a loopback address that sends whatever bytes a test wants, as slowly as it wants.
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

    // Up to the empty line; "" when the client goes before.
    std::string readHead();
    // False when the client is gone.
    bool send(std::string_view bytes);
    // What the client has left to send is dropped unread, so it learns of a reset.
    void reset();
    // Until the client goes or the server ends.
    void waitForClient();

  private:
    int socket_;
};

class HostileServer {
  public:
    // Called for every connection on a thread of its own; the connection is closed behind it.
    using Script = std::function<void(HostileConnection&)>;

    explicit HostileServer(Script script);
    // Reads the head of a request and sends `answer`.
    explicit HostileServer(std::string answer);
    ~HostileServer(); // shuts all connections and waits for their scripts
    HostileServer(const HostileServer&) = delete;
    HostileServer& operator=(const HostileServer&) = delete;

    URL url(std::string_view target = "/") const; // "http://127.0.0.1:PORT" and `target`
    int port() const { return port_; }
    int connections() const { return count_; } // made so far
    int open();                                // now

  private:
    void accept();

    Script script_;
    int socket_, port_ = 0;
    std::atomic<int> count_ = 0;
    std::mutex mutex_; // over the next two
    std::list<int> open_;
    std::list<std::thread> threads_;
    std::thread acceptor_;
};

} // namespace tarnwick
