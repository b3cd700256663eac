// Receives an answer from the session's thread: as a whole, or as a stream.
#pragma once

#include "TarnwickPlatform/Net/NetError.h"
#include "TarnwickPlatform/Net/URLRequest.h"

#include <string_view>

namespace tarnwick {

// The session's thread calls: begin() once, take() any number of times, then end(). fail() may come
// at any point and is the last call.
class Receiver {
  public:
    enum class Taken { all, later, tooMuch }; // later: nothing is taken until hasRoom()

    virtual ~Receiver() = default;

    virtual bool begin(const URLResponse& response) = 0; // false: the announced body is too large
    virtual Taken take(std::string_view bytes) = 0;
    virtual void end() = 0;
    virtual void fail(const NetError& error) = 0;
    virtual bool hasRoom() const = 0;
    virtual bool isCancelled() const = 0; // by its reader
};

} // namespace tarnwick
