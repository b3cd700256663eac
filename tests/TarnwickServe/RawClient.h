// A client that sends any bytes to a server of this machine.
#pragma once

#include <string>
#include <string_view>

namespace tarnwick {

class RawClient {
  public:
    // Connects to 127.0.0.1.
    explicit RawClient(int port);
    ~RawClient();
    RawClient(const RawClient&) = delete;
    RawClient& operator=(const RawClient&) = delete;

    bool send(std::string_view bytes); // false if the server has disconnected
    // All bytes until the server disconnects.
    std::string readAll();
    // All bytes until `text` is among them, or until the server disconnects.
    std::string readTo(std::string_view text);

    int socket() const { return socket_; }

  private:
    int socket_;
};

// A request without a body: "GET /path HTTP/1.1" with the right Host.
std::string request(int port, std::string_view target, std::string_view method = "GET");

// The whole answer to the bytes of a request.
std::string answerTo(int port, std::string_view bytes);

int statusOf(std::string_view answer); // 0: not an answer of HTTP
std::string bodyOf(std::string_view answer);

} // namespace tarnwick
