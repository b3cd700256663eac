// The answer to one request, piece by piece.
#pragma once

#include "TarnwickPlatform/Net/URLRequest.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace tarnwick {

class StreamedAnswer;

// Belongs to one reader; only cancel() may be called from other threads. The session reads on from
// the network while less than 256 KiB wait here, so a slow reader holds up the server and costs no
// memory. Waiting always ends: with the request's time-out at the latest, whose time passes during
// the reader's own work too.
class ByteStream {
  public:
    explicit ByteStream(std::shared_ptr<StreamedAnswer> answer);
    ~ByteStream(); // cancels
    ByteStream(ByteStream&&) noexcept;
    ByteStream& operator=(ByteStream&&) noexcept;

    // Blocks until the answer has begun. Throws NetError where it ends before its head is complete;
    // what happens later changes nothing here. The same response each time.
    const URLResponse& response();
    // Blocks until there is a next piece of the body, of at least one byte; absent at the end.
    // Throws NetError behind all that arrived, also where the end is not the one that the server
    // announced.
    std::optional<std::string> next();
    // Ends the request; what waits and what is asked for later throws NetError, kind cancelled.
    void cancel();

  private:
    std::shared_ptr<StreamedAnswer> answer_; // shared with the session's thread
};

} // namespace tarnwick
