// The answer to one request, in pieces.
#pragma once

#include "TarnwickPlatform/Net/URLRequest.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace tarnwick {

class StreamedAnswer;

// One thread reads; any thread may call cancel(). The session reads from the network while less
// than 256 KiB wait here, so a slow reader slows the server down and memory stays bounded. Blocking
// always ends, at the latest with the request's timeout, which includes the reader's own time.
class ByteStream {
  public:
    explicit ByteStream(std::shared_ptr<StreamedAnswer> answer);
    ~ByteStream(); // cancels
    ByteStream(ByteStream&&) noexcept;
    ByteStream& operator=(ByteStream&&) noexcept;

    // Blocks until the answer's headers are complete. Throws NetError if the request ends before
    // that. The same response each time, whatever happens later.
    const URLResponse& response();
    // Blocks until there is a next piece of the body, of at least one byte; absent at the end.
    // Throws NetError after all bytes that arrived, also if the body is shorter than announced.
    std::optional<std::string> next();
    // Ends the request. Calls that block now and later calls throw NetError of kind cancelled.
    void cancel();

  private:
    std::shared_ptr<StreamedAnswer> answer_; // shared with the session's thread
};

} // namespace tarnwick
