#include "player/Control/OSCReceiver.h"

#include "TarnwickCore/Live/OSC.h"
#include "TarnwickPlatform/Dispatch/HostClock.h"
#include "player/Control/NetworkAddresses.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/eventfd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <netdb.h>
#include <poll.h>
#include <span>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr std::size_t longestPacket = 65536; // bytes, above the maximum of UDP
constexpr int receiveBuffer = 1 << 20;       // bytes, for bursts
constexpr int mostPackets = 256;             // of a socket before the others are read

// Room for an address of either family.
struct Address {
    sockaddr_storage storage{};
    socklen_t size = 0;

    template <typename Form> static Address of(const Form& form) {
        Address address;
        std::memcpy(&address.storage, &form, sizeof form);
        address.size = sizeof form;
        return address;
    }
    const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&storage); }
    sockaddr* get() { return reinterpret_cast<sockaddr*>(&storage); }
};

[[noreturn]] void fail(const std::string& address, std::uint16_t port, int error) {
    const std::string place = "Port " + std::to_string(port) + " of " + address;
    if (error == EADDRINUSE)
        throw OSCPortError(place + " is in use by another program.");
    throw OSCPortError(place + " cannot be opened: " + std::strerror(error) + ".");
}

std::uint16_t portOf(const UDPSocket& socket) {
    Address address;
    address.size = sizeof address.storage;
    ::getsockname(socket.descriptor(), address.get(), &address.size);
    return ntohs(reinterpret_cast<const sockaddr_in*>(address.get())->sin_port);
}

UDPSocket bound(UDPSocket socket, const Address& address, const std::string& text,
                std::uint16_t port) {
    ::setsockopt(socket.descriptor(), SOL_SOCKET, SO_RCVBUF, &receiveBuffer, sizeof receiveBuffer);
    if (!socket.isOpen() || ::bind(socket.descriptor(), address.get(), address.size) != 0)
        fail(text, port, errno);
    return socket;
}

UDPSocket bound4(const std::string& text, std::uint16_t port) {
    sockaddr_in form{};
    form.sin_family = AF_INET;
    form.sin_port = htons(port);
    if (::inet_pton(AF_INET, text.c_str(), &form.sin_addr) != 1)
        throw OSCPortError("\"" + text + "\" is not the address of a network interface.");
    return bound(UDPSocket(AF_INET), Address::of(form), text, port);
}

// The same address of IPv6, for hosts that resolve "localhost" to ::1.
void addBound6(std::vector<UDPSocket>& sockets, const std::string& text, std::uint16_t port) {
    sockaddr_in6 form{};
    form.sin6_family = AF_INET6;
    form.sin6_port = htons(port);
    form.sin6_addr = text == everyAddress ? in6addr_any : in6addr_loopback;
    UDPSocket socket(AF_INET6);
    const int isOnly = 1;
    if (!socket.isOpen() ||
        ::setsockopt(socket.descriptor(), IPPROTO_IPV6, IPV6_V6ONLY, &isOnly, sizeof isOnly) != 0)
        return;
    try {
        sockets.push_back(
            bound(std::move(socket), Address::of(form), text == everyAddress ? "::" : "::1", port));
    } catch (const OSCPortError&) {
        if (errno == EADDRINUSE)
            throw;
    }
}

std::string hostOf(const Address& address) {
    std::array<char, NI_MAXHOST> text{};
    if (::getnameinfo(address.get(), address.size, text.data(), text.size(), nullptr, 0,
                      NI_NUMERICHOST) != 0)
        return {};
    return text.data();
}

} // namespace

std::unique_ptr<OSCReceiver> OSCReceiver::make(const std::string& address, std::uint16_t port,
                                               Listener listener) {
    std::vector<UDPSocket> sockets;
    sockets.push_back(bound4(address, port));
    const std::uint16_t found = portOf(sockets.front());
    if (address == loopbackAddress || address == everyAddress)
        addBound6(sockets, address, found);
    return std::unique_ptr<OSCReceiver>(
        new OSCReceiver(std::move(sockets), found, std::move(listener)));
}

OSCReceiver::OSCReceiver(std::vector<UDPSocket> sockets, std::uint16_t port, Listener listener)
    : sockets_(std::move(sockets)), port_(port), listener_(std::move(listener)),
      waker_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)), thread_([this] { run(); }) {}

OSCReceiver::~OSCReceiver() {
    isOver_ = true;
    ::eventfd_write(waker_, 1);
    thread_.join();
    ::close(waker_);
}

void OSCReceiver::run() {
    std::vector<pollfd> waits{{.fd = waker_, .events = POLLIN, .revents = 0}};
    for (const UDPSocket& socket : sockets_)
        waits.push_back({.fd = socket.descriptor(), .events = POLLIN, .revents = 0});
    std::vector<std::uint8_t> packet(longestPacket);
    while (!isOver_) {
        if (::poll(waits.data(), waits.size(), -1) < 0 && errno != EINTR)
            return;
        for (const UDPSocket& socket : sockets_)
            readAll(socket, packet);
    }
}

void OSCReceiver::readAll(const UDPSocket& socket, std::vector<std::uint8_t>& packet) {
    for (int count = 0; count < mostPackets && !isOver_; ++count) {
        Address sender;
        sender.size = sizeof sender.storage;
        const ssize_t size = ::recvfrom(socket.descriptor(), packet.data(), packet.size(), 0,
                                        sender.get(), &sender.size);
        if (size < 0)
            return;
        const std::string host = hostOf(sender);
        const double now = currentMediaTime();
        for (OSC::Message& message :
             OSC::parse(std::span(packet).first(static_cast<std::size_t>(size))))
            listener_({.source = OSCControl{.address = std::move(message.address)},
                       .numbers = std::move(message.numbers),
                       .from = host,
                       .time = now});
    }
}

} // namespace tarnwick::player
