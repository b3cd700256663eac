// A well-behaved HTTP server on a loopback address, on a port that the system chooses.
#pragma once

#include "TarnwickPlatform/Net/URLRequest.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tarnwick {

// Of a form with files, as another parser than ours reads it.
struct ServedPart {
    std::string name, fileName, contentType, data;

    bool operator==(const ServedPart&) const = default;
};

struct ServedRequest {
    std::string method, target; // path and query as they arrived
    Headers headers;
    std::string body;              // empty for such a form
    std::vector<ServedPart> parts; // of such a form
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
    // Called for every request, on several threads at once.
    using Handler = std::function<ServedAnswer(const ServedRequest&)>;

    // Answers as soon as it stands. With a certificate over TLS.
    explicit LoopbackServer(Handler handler, const std::string& address = "127.0.0.1",
                            const ServerCertificate* certificate = nullptr);
    ~LoopbackServer();

    int port() const;
    // "http://ADDRESS:PORT" (or https) and `target`.
    URL url(std::string_view target) const;
    std::vector<ServedRequest> requests() const; // so far, in the order of their arrival

  private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace tarnwick
