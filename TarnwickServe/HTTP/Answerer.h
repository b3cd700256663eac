// Reads a request from a connection and answers it from the newest site. The one file that knows
// cpp-httplib.
#pragma once

#include "TarnwickServe/AccessToken.h"
#include "TarnwickServe/HTTP/Connection.h"
#include "TarnwickServe/ServeLimits.h"
#include "TarnwickServe/SiteNews.h"

#include <atomic>
#include <memory>
#include <optional>
#include <stop_token>

namespace tarnwick {

class Answerer {
  public:
    // Borrows all three.
    Answerer(SiteNews& news, const std::optional<AccessToken>& token, const ServeLimits& limits);
    ~Answerer();

    // Blocks until the request is answered, the time is over, or, for a stream of events, the
    // client leaves or a stop is requested. Any thread.
    void answer(Connection& connection, std::stop_token stop);

  private:
    struct Parser;

    std::unique_ptr<Parser> parser_;
};

} // namespace tarnwick
