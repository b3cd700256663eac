// A correct HTTP server on a loopback address, on a port chosen by the system.
#pragma once

#include "TarnwickPlatform/Net/URLRequest.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tarnwick {

// A part of a form with files, read by another parser than ours.
struct ServedPart {
    std::string name, fileName, contentType, data;

    bool operator==(const ServedPart&) const = default;
};

struct ServedRequest {
    std::string method, target; // path and query as received
    Headers headers;
    std::string body;              // empty for a form with files
    std::vector<ServedPart> parts; // of a form with files
};

struct ServedAnswer {
    int status = 200;
    Headers headers;
    std::string body;
};

struct ServerCertificate {
    std::filesystem::path certificate, key; // PEM
};

class LoopbackServer {
  public:
    // Called for every request, on several threads in parallel.
    using Handler = std::function<ServedAnswer(const ServedRequest&)>;

    // Runs after construction. With a certificate it uses TLS.
    explicit LoopbackServer(Handler handler, const std::string& address = "127.0.0.1",
                            const ServerCertificate* certificate = nullptr);
    ~LoopbackServer();

    int port() const;
    // "http://ADDRESS:PORT" (or https) and `target`.
    URL url(std::string_view target) const;
    std::vector<ServedRequest> requests() const; // until now, in order

  private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace tarnwick
