// Common to the tests of calls of the service.
#pragma once

#include "tests/servers/HostileServer.h"
#include "tests/servers/LoopbackServer.h"

#include <future>
#include <stdexcept>
#include <string>

namespace tarnwick {

// The error of type Failure that the call throws. Any other end fails the test.
template <typename Failure, typename Result> Failure failureOf(std::future<Result> call) {
    try {
        call.get();
    } catch (const Failure& failure) {
        return failure;
    }
    throw std::runtime_error("The call gives a result.");
}

// A server that gives the same answer to every request.
class FixedServer : public LoopbackServer {
  public:
    FixedServer(int status, const std::string& body, const Headers& headers = {})
        : LoopbackServer([=](const ServedRequest&) {
              return ServedAnswer{.status = status, .headers = headers, .body = body};
          }) {}
};

// Sends `head`, then nothing.
inline HostileServer::Script silentAfter(const std::string& head) {
    return [head](HostileConnection& connection) {
        connection.readHead();
        connection.send(head);
        connection.waitForClient();
    };
}

// Sends `head`, then megabytes as long as the client reads.
inline HostileServer::Script endless(const std::string& head) {
    return [head](HostileConnection& connection) {
        connection.readHead();
        connection.send(head);
        const std::string megabyte(std::size_t{1} << 20, ' ');
        for (int sent = 0; sent < 100 && connection.send(megabyte); ++sent)
            ;
    };
}

} // namespace tarnwick
