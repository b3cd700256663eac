#include "TarnwickPlatform/Net/Session/Exchange.h"

#include "TarnwickBase/Precondition.h"
#include "TarnwickPlatform/Net/Session/CurlError.h"
#include "TarnwickPlatform/Net/Session/Redirect.h"

#include <sys/socket.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

namespace tarnwick {

namespace {

bool isToken(std::string_view text) {
    constexpr std::string_view marks = "!#$%&'*+-.^_`|~";
    return !text.empty() && std::ranges::all_of(text, [&](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
               marks.find(c) != marks.npos;
    });
}

bool isFieldValue(std::string_view text) {
    return std::ranges::none_of(text, [](char c) {
        return (static_cast<unsigned char>(c) < 0x20 && c != '\t') || c == 0x7F;
    });
}

bool isLoopback(const std::string& host) {
    return host == "localhost" || host == "[::1]" || host.starts_with("127.");
}

// Child processes do not inherit the connection.
curl_socket_t openSocket(void*, curlsocktype, curl_sockaddr* address) {
    return socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
}

std::optional<std::int64_t> lengthIn(std::string_view digits) {
    std::int64_t length = 0;
    const auto* end = digits.data() + digits.size();
    const auto [rest, error] = std::from_chars(digits.data(), end, length);
    return error == std::errc() && rest == end && length >= 0 ? std::optional(length)
                                                              : std::nullopt;
}

} // namespace

bool canBeSent(const URLRequest& request) {
    return canBeRequested(request.url) && isToken(request.method) &&
           std::ranges::all_of(request.headers, [](const Header& field) {
               return isToken(field.name) && isFieldValue(field.value);
           });
}

Exchange::Exchange(CURLM* multi, const URLRequest& request,
                   const SessionConfiguration& configuration, ExchangeEvents& events)
    : multi_(multi), request_(request), configuration_(configuration), events_(events),
      easy_(curl_easy_init()) {
    precondition(easy_ != nullptr, "the transfer library has memory for a request");
    setTransport();
    setSecurity();
    setRequest();
    setHeaders();
    setCallbacks();
    curl_multi_add_handle(multi_, easy_);
}

Exchange::~Exchange() {
    curl_multi_remove_handle(multi_, easy_);
    curl_easy_cleanup(easy_);
    curl_slist_free_all(headerLines_);
    curl_slist_free_all(places_);
}

template <class Value> void Exchange::set(CURLoption option, Value value) {
    const CURLcode code = curl_easy_setopt(easy_, option, value);
    precondition(code == CURLE_OK, "the transfer library accepts an option and its value", "option",
                 static_cast<int>(option), "code", static_cast<int>(code));
}

void Exchange::setTransport() {
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_QUICK_EXIT, 1L); // otherwise ending a request waits for the look-up of its host
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    // In HTTP/2 the window of one stream buffers megabytes for a slow reader.
    set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    const double connectTimeout = std::clamp(configuration_.connectTimeout, 0.001, 1e6);
    set(CURLOPT_CONNECTTIMEOUT_MS, std::lround(connectTimeout * 1000));
    set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    set(CURLOPT_FORBID_REUSE, 1L);
    for (const std::string& place : configuration_.connectTo)
        places_ = curl_slist_append(places_, place.c_str());
    set(CURLOPT_CONNECT_TO, places_);
    if (places_ || isLoopback(request_.url.host()))
        set(CURLOPT_PROXY, "");
    set(CURLOPT_OPENSOCKETFUNCTION, openSocket);
}

void Exchange::setSecurity() {
    set(CURLOPT_SSL_VERIFYPEER, 1L);
    set(CURLOPT_SSL_VERIFYHOST, 2L);
    set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    if (configuration_.certificateFile.empty())
        return;
    set(CURLOPT_CAINFO, configuration_.certificateFile.c_str());
    set(CURLOPT_CAPATH, static_cast<const char*>(nullptr)); // else the system's are trusted too
}

void Exchange::setRequest() {
    set(CURLOPT_URL, request_.url.string().c_str());
    set(CURLOPT_PATH_AS_IS, 1L);
    if (request_.method == "HEAD") {
        set(CURLOPT_NOBODY, 1L);
    } else if (request_.method != "GET" || !request_.body.empty()) {
        set(CURLOPT_POST, 1L);
        set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request_.body.size()));
        set(CURLOPT_POSTFIELDS, request_.body.c_str()); // not copied
        set(CURLOPT_CUSTOMREQUEST, request_.method.c_str());
    }
}

void Exchange::setHeaders() {
    const auto append = [&](const std::string& line) {
        headerLines_ = curl_slist_append(headerLines_, line.c_str());
    };
    for (const Header& field : request_.headers)
        append(field.value.empty() ? field.name + ";" : field.name + ": " + field.value);
    // Without this field a server may compress (RFC 9110, 12.5.3).
    if (!request_.headers.find("Accept-Encoding"))
        append("Accept-Encoding: identity");
    // Remove the library's own fields: a type that the caller did not give, and "Expect" before
    // long bodies, which costs a second with servers that do not answer it.
    for (const char* name : {"Content-Type", "Expect"})
        if (!request_.headers.find(name))
            append(std::string(name) + ":");
    set(CURLOPT_HTTPHEADER, headerLines_);
}

// The library is C: an exception in a callback ends the process.
void Exchange::setCallbacks() {
    using Taker = std::size_t (*)(char*, std::size_t, std::size_t, void*) noexcept;
    const Taker header = [](char* bytes, std::size_t, std::size_t size, void* self) noexcept {
        const bool goesOn = static_cast<Exchange*>(self)->didReceiveHeaderLine({bytes, size});
        return goesOn ? size : 0;
    };
    const Taker body = [](char* bytes, std::size_t, std::size_t size, void* self) noexcept {
        auto& exchange = *static_cast<Exchange*>(self);
        switch (exchange.events_.didReceive(std::string_view(bytes, size))) {
        case Receiver::Taken::all:
            return size;
        case Receiver::Taken::later:
            return std::size_t{CURL_WRITEFUNC_PAUSE};
        case Receiver::Taken::tooMuch:
            break;
        }
        exchange.refusal_ = NetError::Kind::tooLarge;
        return std::size_t{0};
    };
    using Progress = int (*)(void*, curl_off_t, curl_off_t, curl_off_t, curl_off_t) noexcept;
    const Progress progress = [](void* self, curl_off_t, curl_off_t, curl_off_t,
                                 curl_off_t) noexcept {
        static_cast<Exchange*>(self)->reportSent();
        return 0;
    };
    set(CURLOPT_HEADERFUNCTION, header);
    set(CURLOPT_HEADERDATA, this);
    set(CURLOPT_WRITEFUNCTION, body);
    set(CURLOPT_WRITEDATA, this);
    if (!request_.body.empty()) {
        set(CURLOPT_XFERINFOFUNCTION, progress);
        set(CURLOPT_XFERINFODATA, this);
        set(CURLOPT_NOPROGRESS, 0L);
    }
}

CURLcode Exchange::resume() {
    return curl_easy_pause(easy_, CURLPAUSE_CONT);
}

void Exchange::reportSent() {
    curl_off_t sent = 0;
    curl_easy_getinfo(easy_, CURLINFO_SIZE_UPLOAD_T, &sent);
    if (sent > std::exchange(sent_, std::max<std::int64_t>(sent_, sent)))
        events_.didSendBody(sent);
}

bool Exchange::didReceiveHeaderLine(std::string_view line) {
    headerBytes_ += line.size();
    if (headerBytes_ > configuration_.headerLimit)
        refusal_ = NetError::Kind::tooLarge;
    const bool isLast = line == "\r\n" || line == "\n";
    if (refusal_ || !isLast || hasResponse_) // trailers are only counted
        return !refusal_;
    const auto answer = response();
    if (!answer)
        return true;
    hasResponse_ = true;
    if (!canBeRead(*answer))
        refusal_ = NetError::Kind::notHTTP;
    else if (!events_.didReceive(*answer))
        refusal_ = NetError::Kind::tooLarge;
    return !refusal_;
}

std::optional<URLResponse> Exchange::response() const {
    long status = 0;
    curl_easy_getinfo(easy_, CURLINFO_RESPONSE_CODE, &status);
    if (status < 200) // interim answers such as "100 Continue"
        return std::nullopt;
    URLResponse response{.status = static_cast<int>(status), .url = request_.url};
    curl_header* field = nullptr;
    while ((field = curl_easy_nextheader(easy_, CURLH_HEADER, -1, field)))
        response.headers.add(field->name, field->value);
    const std::string* length = response.headers.find("Content-Length");
    if (length && !response.headers.find("Transfer-Encoding"))
        response.expectedLength = lengthIn(*length);
    return response;
}

// Refuses answers that the library would read in its own way: it decodes a compressed transfer
// coding even if not asked for, takes the last of several lengths, and ignores a length that
// overflows.
bool Exchange::canBeRead(const URLResponse& response) const {
    const std::string* length = response.headers.find("Content-Length");
    if (length && !lengthIn(*length))
        return false;
    return std::ranges::all_of(response.headers, [&](const Header& field) {
        return (!equalsIgnoringCase(field.name, "Transfer-Encoding") ||
                equalsIgnoringCase(field.value, "chunked")) &&
               (!equalsIgnoringCase(field.name, "Content-Length") || field.value == *length);
    });
}

std::optional<NetError> Exchange::error(CURLcode code) const {
    if (refusal_)
        return NetError(*refusal_);
    if (code != CURLE_OK)
        return netError(code, easy_);
    return hasResponse_ ? std::nullopt : std::optional(NetError(NetError::Kind::connectionLost));
}

} // namespace tarnwick
