#include "TarnwickServe/HTTP/Listener.h"

#include "TarnwickServe/ServeError.h"

#include <arpa/inet.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <ifaddrs.h>
#include <optional>
#include <unistd.h>
#include <utility>

namespace tarnwick {
namespace {

struct SocketAddress {
    sockaddr_storage storage{};
    socklen_t size = 0;

    int family() const { return storage.ss_family; }
    sockaddr* generic() { return reinterpret_cast<sockaddr*>(&storage); }
};

std::optional<SocketAddress> parsed(const std::string& text, int port) {
    SocketAddress address;
    auto& four = reinterpret_cast<sockaddr_in&>(address.storage);
    auto& six = reinterpret_cast<sockaddr_in6&>(address.storage);
    const auto networkPort = htons(static_cast<std::uint16_t>(port));
    if (inet_pton(AF_INET, text.c_str(), &four.sin_addr) == 1) {
        four.sin_family = AF_INET;
        four.sin_port = networkPort;
        address.size = sizeof four;
        return address;
    }
    if (inet_pton(AF_INET6, text.c_str(), &six.sin6_addr) == 1) {
        six.sin6_family = AF_INET6;
        six.sin6_port = networkPort;
        address.size = sizeof six;
        return address;
    }
    return std::nullopt;
}

std::string refusal(const std::string& address, int port, int cause) {
    const std::string portText = std::to_string(port);
    switch (cause) {
    case EADDRINUSE:
        return "Port " + portText + " of " + address +
               " is used by another program; --port names another one, or 0 for any that is free.";
    case EADDRNOTAVAIL:
        return address + " is not an address of this machine.";
    case EACCES:
        return "Port " + portText +
               " needs the rights of the administrator; --port names another one.";
    default:
        return "Port " + portText + " of " + address + " cannot be used: " + std::strerror(cause) +
               ".";
    }
}

std::string inLink(const std::string& address) {
    return address.find(':') == std::string::npos ? address : "[" + address + "]";
}

// Those of the interfaces that other machines reach, then loopback. Addresses of one link (RFC
// 4291, 2.5.6) need a zone, which browsers do not take.
std::vector<std::string> interfaceAddresses(int family) {
    std::vector<std::string> outer, loopback;
    ifaddrs* first = nullptr;
    if (getifaddrs(&first) != 0)
        return {};
    for (const ifaddrs* one = first; one != nullptr; one = one->ifa_next) {
        if (one->ifa_addr == nullptr || one->ifa_addr->sa_family != family ||
            (one->ifa_flags & IFF_UP) == 0)
            continue;
        std::array<char, INET6_ADDRSTRLEN> text{};
        const auto& six = reinterpret_cast<const sockaddr_in6&>(*one->ifa_addr);
        const auto& four = reinterpret_cast<const sockaddr_in&>(*one->ifa_addr);
        if (family == AF_INET6 && IN6_IS_ADDR_LINKLOCAL(&six.sin6_addr))
            continue;
        inet_ntop(family,
                  family == AF_INET6 ? static_cast<const void*>(&six.sin6_addr) : &four.sin_addr,
                  text.data(), text.size());
        ((one->ifa_flags & IFF_LOOPBACK) != 0 ? loopback : outer).push_back(inLink(text.data()));
    }
    freeifaddrs(first);
    outer.insert(outer.end(), loopback.begin(), loopback.end());
    return outer;
}

} // namespace

Listener::Listener(const std::string& address, int port) : address_(address) {
    std::optional<SocketAddress> place = parsed(address, port);
    if (!place)
        throw ServeError("\"" + address +
                         "\" is not an address of IPv4 or IPv6, such as 0.0.0.0 or ::.");
    socket_ = ::socket(place->family(), SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    const int on = 1;
    setsockopt(socket_, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    if (place->family() == AF_INET6)
        setsockopt(socket_, IPPROTO_IPV6, IPV6_V6ONLY, &on, sizeof on);
    constexpr int waiting = 64;
    if (socket_ < 0 || bind(socket_, place->generic(), place->size) != 0 ||
        listen(socket_, waiting) != 0 ||
        getsockname(socket_, place->generic(), &place->size) != 0) {
        const int cause = errno;
        if (socket_ >= 0)
            close(socket_);
        throw ServeError(refusal(address, port, cause));
    }
    port_ = ntohs(place->family() == AF_INET6
                      ? reinterpret_cast<const sockaddr_in6&>(place->storage).sin6_port
                      : reinterpret_cast<const sockaddr_in&>(place->storage).sin_port);
}

Listener::~Listener() {
    if (socket_ >= 0)
        close(socket_);
}

Listener::Listener(Listener&& other) noexcept
    : address_(std::move(other.address_)), socket_(std::exchange(other.socket_, -1)),
      port_(other.port_) {}

int Listener::accept() const {
    return accept4(socket_, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
}

std::vector<std::string> Listener::reachedAs() const {
    std::vector<std::string> all;
    if (address_ == "0.0.0.0")
        all = interfaceAddresses(AF_INET);
    else if (address_ == "::")
        all = interfaceAddresses(AF_INET6);
    return all.empty() ? std::vector{inLink(address_)} : all;
}

} // namespace tarnwick
