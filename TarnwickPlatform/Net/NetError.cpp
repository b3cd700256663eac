#include "TarnwickPlatform/Net/NetError.h"

namespace tarnwick {

namespace {

const char* sentenceOf(NetError::Kind kind) {
    using enum NetError::Kind;
    switch (kind) {
    case badRequest:
        return "The request cannot be sent.";
    case cannotFindHost:
        return "A server with that name is not found.";
    case cannotConnect:
        return "The connection to the server fails.";
    case timedOut:
        return "The request timed out.";
    case connectionLost:
        return "The connection to the server was lost.";
    case secureConnectionFailed:
        return "A secure connection to the server fails.";
    case badCertificate:
        return "The server's certificate is not valid.";
    case notHTTP:
        return "The server does not answer in HTTP.";
    case tooManyRedirects:
        return "The server redirects the request too often.";
    case tooLarge:
        return "The server's answer is too large.";
    case cancelled:
        return "The request was cancelled.";
    case other:
        return "The request fails.";
    }
    return "";
}

} // namespace

NetError::NetError(Kind kind) : NetError(kind, sentenceOf(kind)) {}

} // namespace tarnwick
