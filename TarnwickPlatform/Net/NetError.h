// The error of requests that get no answer.
#pragma once

#include <stdexcept>
#include <string>

namespace tarnwick {

// what() is one whole sentence for the user. It contains no part of the request or the answer: no
// address, no header, no body.
class NetError : public std::runtime_error {
  public:
    enum class Kind {
        badRequest, // not sent: the address is not http or https or has a user name, or a header or
                    // the method has invalid characters
        cannotFindHost,
        cannotConnect,
        timedOut, // while connecting or while the answer arrived
        connectionLost,
        secureConnectionFailed, // TLS fails, but not because of the certificate
        badCertificate,
        notHTTP, // the answer is not valid HTTP
        tooManyRedirects,
        tooLarge, // headers or body exceed the session's limits
        cancelled,
        other,
    };

    explicit NetError(Kind kind); // with the kind's own sentence
    NetError(Kind kind, const std::string& sentence) : runtime_error(sentence), kind_(kind) {}

    Kind kind() const { return kind_; }

  private:
    Kind kind_;
};

} // namespace tarnwick
