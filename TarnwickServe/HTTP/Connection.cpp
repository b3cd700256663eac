#include "TarnwickServe/HTTP/Connection.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <openssl/err.h>
#include <openssl/ssl.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <optional>
#include <poll.h>
#include <unistd.h>

namespace tarnwick {
namespace {

using std::chrono::steady_clock;

constexpr std::size_t pieceBytes = 4096;
constexpr int mostDrainedPieces = 16;

bool isInterrupted() {
    return errno == EINTR;
}

// Nothing if the call is to be repeated.
std::optional<std::ptrdiff_t> resultOf(ssize_t count) {
    if (count >= 0)
        return count;
    if (isInterrupted() || errno == EAGAIN || errno == EWOULDBLOCK)
        return std::nullopt;
    return -1;
}

std::optional<std::ptrdiff_t> resultOf(SSL* session, int result, std::size_t count) {
    if (result == 1)
        return static_cast<std::ptrdiff_t>(count);
    switch (SSL_get_error(session, result)) {
    case SSL_ERROR_WANT_READ:
    case SSL_ERROR_WANT_WRITE:
        return std::nullopt;
    case SSL_ERROR_ZERO_RETURN:
        return 0;
    default:
        return -1;
    }
}

template <class Fill> Connection::Address addressOf(Fill fill) {
    sockaddr_storage storage{};
    socklen_t size = sizeof storage;
    if (fill(reinterpret_cast<sockaddr*>(&storage), &size) != 0)
        return {};
    std::array<char, INET6_ADDRSTRLEN> text{};
    if (storage.ss_family == AF_INET6) {
        const auto& address = reinterpret_cast<const sockaddr_in6&>(storage);
        inet_ntop(AF_INET6, &address.sin6_addr, text.data(), text.size());
        return {.text = text.data(),
                .port = ntohs(address.sin6_port),
                .isLoopback = IN6_IS_ADDR_LOOPBACK(&address.sin6_addr) != 0};
    }
    const auto& address = reinterpret_cast<const sockaddr_in&>(storage);
    inet_ntop(AF_INET, &address.sin_addr, text.data(), text.size());
    return {.text = text.data(),
            .port = ntohs(address.sin_port),
            .isLoopback = ntohl(address.sin_addr.s_addr) >> 24 == IN_LOOPBACKNET};
}

} // namespace

Connection::Connection(int socket, std::size_t mostBytes, std::shared_ptr<SSL> session)
    : socket_(socket), session_(std::move(session)), left_(mostBytes) {}

Connection::~Connection() {
    close(socket_);
}

std::ptrdiff_t Connection::read(char* bytes, std::size_t size) {
    if (at_ == buffer_.size()) {
        if (left_ == 0)
            return -1;
        buffer_.resize(std::min(pieceBytes, left_));
        at_ = 0;
        const std::ptrdiff_t received = receive(buffer_.data(), buffer_.size());
        buffer_.resize(static_cast<std::size_t>(std::max<std::ptrdiff_t>(0, received)));
        if (received <= 0)
            return received;
        left_ -= buffer_.size();
    }
    const std::size_t count = std::min(size, buffer_.size() - at_);
    std::memcpy(bytes, buffer_.data() + at_, count);
    at_ += count;
    return static_cast<std::ptrdiff_t>(count);
}

// Repeats `move` until it has moved bytes: its result, 0 at the end, -1 on failure. `move` gives no
// result as long as the socket or the session waits; `events` are those that a socket waits for.
template <class Move> std::ptrdiff_t Connection::moved(short events, Move move) const {
    for (;;) {
        const std::optional<std::ptrdiff_t> count = move();
        if (count)
            return *count;
        // A session may have to write before it can read.
        const short awaited =
            session_ ? (SSL_want_write(session_.get()) ? POLLOUT : POLLIN) : events;
        if (!waitFor(awaited))
            return -1;
    }
}

std::ptrdiff_t Connection::receive(char* bytes, std::size_t size) {
    return moved(POLLIN, [&] {
        if (!session_)
            return resultOf(recv(socket_, bytes, size, 0));
        std::size_t count = 0;
        ERR_clear_error();
        const int result = SSL_read_ex(session_.get(), bytes, size, &count);
        return resultOf(session_.get(), result, count);
    });
}

// SSL_write_ex writes without MSG_NOSIGNAL; cpp-httplib makes the process ignore SIGPIPE.
std::ptrdiff_t Connection::send(std::string_view bytes) {
    return moved(POLLOUT, [&] {
        if (!session_)
            return resultOf(::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL));
        std::size_t count = 0;
        ERR_clear_error();
        const int result = SSL_write_ex(session_.get(), bytes.data(), bytes.size(), &count);
        return resultOf(session_.get(), result, count);
    });
}

bool Connection::write(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::ptrdiff_t sent = std::chrono::steady_clock::now() < end_ ? send(bytes) : -1;
        if (sent < 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

bool Connection::isReadable() {
    pollfd one{.fd = socket_, .events = POLLIN, .revents = 0};
    return at_ < buffer_.size() || (session_ && SSL_pending(session_.get()) > 0) ||
           poll(&one, 1, 0) > 0;
}

bool Connection::hasLeft() const {
    pollfd one{.fd = socket_, .events = POLLIN | POLLRDHUP, .revents = 0};
    return poll(&one, 1, 0) > 0 && (one.revents & (POLLRDHUP | POLLHUP | POLLERR)) != 0;
}

void Connection::finish() {
    ERR_clear_error();
    if (session_ && SSL_is_init_finished(session_.get()) == 1)
        SSL_shutdown(session_.get()); // one way; the client may have left
    session_ = nullptr;
    shutdown(socket_, SHUT_WR);
    endAt(std::min(end_, steady_clock::now() + std::chrono::seconds(1)));
    std::array<char, pieceBytes> ignored{};
    for (int piece = 0; piece < mostDrainedPieces; ++piece)
        if (receive(ignored.data(), ignored.size()) <= 0)
            return;
}

Connection::Address Connection::localOf(int socket) {
    return addressOf(
        [&](sockaddr* address, socklen_t* size) { return getsockname(socket, address, size); });
}

Connection::Address Connection::remoteOf(int socket) {
    return addressOf(
        [&](sockaddr* address, socklen_t* size) { return getpeername(socket, address, size); });
}

// False if the time is over.
bool Connection::waitFor(short events) const {
    using std::chrono::milliseconds;
    for (;;) {
        const auto left = std::chrono::ceil<milliseconds>(end_ - steady_clock::now()).count();
        if (left <= 0)
            return false;
        pollfd one{.fd = socket_, .events = events, .revents = 0};
        const int found = poll(&one, 1, static_cast<int>(std::min<std::int64_t>(left, 60'000)));
        if (found > 0)
            return true;
        if (found < 0 && !isInterrupted())
            return false;
    }
}

} // namespace tarnwick
