#include "TarnwickPlatform/Net/Session/CurlError.h"

#include <algorithm>
#include <array>

namespace tarnwick {

namespace {

using Kind = NetError::Kind;

struct Row {
    CURLcode code;
    Kind kind;
};

constexpr std::array rows = std::to_array<Row>({
    {CURLE_URL_MALFORMAT, Kind::badRequest},
    {CURLE_COULDNT_RESOLVE_HOST, Kind::cannotFindHost},
    {CURLE_COULDNT_RESOLVE_PROXY, Kind::cannotFindHost},
    {CURLE_COULDNT_CONNECT, Kind::cannotConnect},
    {CURLE_PROXY, Kind::cannotConnect},
    {CURLE_OPERATION_TIMEDOUT, Kind::timedOut},
    {CURLE_PARTIAL_FILE, Kind::connectionLost},
    {CURLE_GOT_NOTHING, Kind::connectionLost},
    {CURLE_SEND_ERROR, Kind::connectionLost},
    {CURLE_RECV_ERROR, Kind::connectionLost},
    {CURLE_SSL_CONNECT_ERROR, Kind::secureConnectionFailed},
    {CURLE_SSL_CIPHER, Kind::secureConnectionFailed},
    {CURLE_SSL_CACERT_BADFILE, Kind::secureConnectionFailed},
    {CURLE_PEER_FAILED_VERIFICATION, Kind::badCertificate},
    {CURLE_SSL_ISSUER_ERROR, Kind::badCertificate},
    {CURLE_UNSUPPORTED_PROTOCOL, Kind::notHTTP}, // an answer without a status line
    {CURLE_WEIRD_SERVER_REPLY, Kind::notHTTP},
    {CURLE_BAD_CONTENT_ENCODING, Kind::notHTTP},
    {CURLE_OUT_OF_MEMORY, Kind::tooLarge}, // a header line over 100 KB, which the library refuses
});

// The results of a certificate's check are numbers of the TLS library (X509_V_ERR_...).
NetError badCertificate(CURL* easy) {
    long result = 0;
    curl_easy_getinfo(easy, CURLINFO_SSL_VERIFYRESULT, &result);
    switch (result) {
    case 0:
    case 1: // the chain is valid; the library checks the host before it stores that
        return {Kind::badCertificate, "The server's certificate is for another host."};
    case 9:
        return {Kind::badCertificate, "The server's certificate is not yet valid."};
    case 10:
        return {Kind::badCertificate, "The server's certificate has expired."};
    case 18:
    case 19:
    case 20:
    case 21:
        return {Kind::badCertificate,
                "The server's certificate is from an authority that is not trusted."};
    default:
        return NetError(Kind::badCertificate);
    }
}

} // namespace

NetError netError(CURLcode code, CURL* easy) {
    const auto row = std::ranges::find(rows, code, &Row::code);
    if (row == rows.end())
        return {Kind::other, std::string(curl_easy_strerror(code)) + "."};
    return row->kind == Kind::badCertificate ? badCertificate(easy) : NetError(row->kind);
}

} // namespace tarnwick
