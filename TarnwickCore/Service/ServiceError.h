// Why a call of the sharing service gave no result.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tarnwick {

// what() is the user's sentence: the service's own words where it sent some, else one of ours. The
// service's words may hold control characters other than line breaks; a terminal should not get
// those. No token and no address stands in it.
class ServiceError : public std::runtime_error {
  public:
    enum class Kind : std::uint8_t {
        signedOut,   // the token is not, or no longer, one
        needsHandle, // the account has to choose a handle first
        tooMany,     // requests; later is better
        server,      // any other refusal; has a status
        network,     // no answer: the system's words
        badAnswer,   // an answer that is not what was asked for
    };

    // Only `server` has a status other than 0.
    ServiceError(Kind kind, const std::string& message, int status = 0);
    static ServiceError badAnswer();

    // What the service's refusal with that status and body means. Its words are the member "error"
    // of a JSON object, unless that or "needsHandle" has a wrong type: without line breaks and cut
    // to the first 300 characters, as readers count them.
    static ServiceError of(int status, std::string_view body);

    Kind kind() const { return kind_; }
    int status() const { return status_; } // HTTP's, of `server`

    bool operator==(const ServiceError& other) const;

  private:
    Kind kind_;
    int status_;
};

} // namespace tarnwick
