// Why a request got no answer.
#pragma once

#include <stdexcept>
#include <string>

namespace tarnwick {

// what() is one whole sentence for the user. It holds nothing of what was sent or received: no
// address, no header, no body.
class NetError : public std::runtime_error {
  public:
    enum class Kind {
        badRequest, // not sent: the address is not http or https or carries a user name, or a
                    // header or the method can't be written
        cannotFindHost,
        cannotConnect,
        timedOut, // while connecting or while the answer arrived
        connectionLost,
        secureConnectionFailed, // TLS, but not for the certificate
        badCertificate,
        notHTTP, // what arrived is no HTTP answer
        tooManyRedirects,
        tooLarge, // headers or body are over the session's caps
        cancelled,
        other,
    };

    explicit NetError(Kind kind); // says the kind's own sentence
    NetError(Kind kind, const std::string& sentence) : runtime_error(sentence), kind_(kind) {}

    Kind kind() const { return kind_; }

  private:
    Kind kind_;
};

} // namespace tarnwick
