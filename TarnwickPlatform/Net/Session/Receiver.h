// Who takes an answer from the session's thread: one that waits for the whole, or a stream.
#pragma once

#include "TarnwickPlatform/Net/NetError.h"
#include "TarnwickPlatform/Net/URLRequest.h"

#include <string_view>

namespace tarnwick {

// All calls come from the session's thread: one begin(), any number of take(), then end(); or
// fail() at any point, and nothing after it.
class Receiver {
  public:
    enum class Taken { all, later, tooMuch }; // later: nothing of it, until hasRoom()

    virtual ~Receiver() = default;

    virtual bool begin(const URLResponse& response) = 0; // false: it announces too much
    virtual Taken take(std::string_view bytes) = 0;
    virtual void end() = 0;
    virtual void fail(const NetError& error) = 0;
    virtual bool hasRoom() const = 0;
    virtual bool isCancelled() const = 0; // by its reader
};

} // namespace tarnwick
