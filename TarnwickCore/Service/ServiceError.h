// The error of a call of the sharing service.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tarnwick {

// what() is one sentence for the user: the service's own text if it sent one, otherwise ours. The
// text of the service may hold control characters except line breaks; remove them before printing
// to a terminal. It contains no token and no address.
class ServiceError : public std::runtime_error {
  public:
    enum class Kind : std::uint8_t {
        signedOut,   // the token is not valid, or no longer
        needsHandle, // the account must choose a handle first
        tooMany,     // too many requests; try again later
        server,      // any other status of the answer
        network,     // no answer; what() is the text of the system
        badAnswer,   // an answer that cannot be read
    };

    // Only `server` has a status other than 0.
    ServiceError(Kind kind, const std::string& message, int status = 0);
    static ServiceError badAnswer();

    // The error for a refusal with this status and body. Its text is the member "error" of a JSON
    // object, unless that member or "needsHandle" has a wrong type: without line breaks, and cut to
    // 300 characters (grapheme clusters).
    static ServiceError of(int status, std::string_view body);

    Kind kind() const { return kind_; }
    int status() const { return status_; } // of HTTP, for `server`

    bool operator==(const ServiceError& other) const;

  private:
    Kind kind_;
    int status_;
};

} // namespace tarnwick
