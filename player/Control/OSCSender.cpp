#include "player/Control/OSCSender.h"

#include <netinet/in.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <memory>
#include <netdb.h>
#include <optional>
#include <utility>

namespace tarnwick::player {
namespace {

struct FreeAddresses {
    void operator()(addrinfo* first) const { ::freeaddrinfo(first); }
};
using Addresses = std::unique_ptr<addrinfo, FreeAddresses>;

Addresses lookedUp(const std::string& host, std::uint16_t port) {
    addrinfo wanted{};
    wanted.ai_family = AF_UNSPEC;
    wanted.ai_socktype = SOCK_DGRAM;
    addrinfo* found = nullptr;
    if (::getaddrinfo(host.c_str(), std::to_string(port).c_str(), &wanted, &found) != 0)
        return nullptr;
    return Addresses(found);
}

std::string numeric(const addrinfo& address) {
    std::array<char, NI_MAXHOST> text{};
    if (::getnameinfo(address.ai_addr, address.ai_addrlen, text.data(), text.size(), nullptr, 0,
                      NI_NUMERICHOST) != 0)
        return {};
    return text.data();
}

// IPv4 first: receivers of OSC often have nothing else.
const addrinfo* preferred(const Addresses& addresses) {
    for (const addrinfo* one = addresses.get(); one != nullptr; one = one->ai_next)
        if (one->ai_family == AF_INET)
            return one;
    return addresses.get();
}

} // namespace

struct OSCSender::Shared {
    std::string host;
    std::uint16_t port = 0;
    std::mutex mutex; // guards the rest
    std::condition_variable changed;
    std::function<void(std::string)> fail; // empty once the owner is gone
    std::map<std::string, OSC::Message> waiting;
    std::vector<std::string> addresses; // of the host, numeric
    bool isOver = false;

    void run();
    // False at the end.
    bool takeMessages(std::map<std::string, OSC::Message>& taken);
    void keep(const Addresses& found);
};

void OSCSender::Shared::keep(const Addresses& found) {
    const std::lock_guard lock(mutex);
    if (!found && fail)
        fail("The host \"" + host + "\" of the OSC output is not found.");
    for (const addrinfo* one = found.get(); one != nullptr; one = one->ai_next)
        addresses.push_back(numeric(*one));
}

bool OSCSender::Shared::takeMessages(std::map<std::string, OSC::Message>& taken) {
    std::unique_lock lock(mutex);
    changed.wait(lock, [this] { return isOver || !waiting.empty(); });
    taken.clear();
    taken.swap(waiting);
    return !isOver;
}

void OSCSender::Shared::run() {
    const Addresses found = lookedUp(host, port);
    keep(found);
    const addrinfo* target = preferred(found);
    if (target == nullptr)
        return;
    const UDPSocket socket(target->ai_family);
    std::map<std::string, OSC::Message> taken;
    while (takeMessages(taken)) {
        for (const auto& [address, message] : taken) {
            const auto packet = OSC::encode(message);
            // An unreachable host is no error: it may come back.
            ::sendto(socket.descriptor(), packet.data(), packet.size(), MSG_NOSIGNAL,
                     target->ai_addr, target->ai_addrlen);
        }
        std::unique_lock lock(mutex);
        changed.wait_for(lock, std::chrono::duration<double>(interval), [this] { return isOver; });
    }
}

OSCSender::OSCSender(std::string host, std::uint16_t port, std::function<void(std::string)> fail)
    : shared_(std::make_shared<Shared>()) {
    shared_->host = std::move(host);
    shared_->port = port;
    shared_->fail = std::move(fail);
    // Looking up a name may take seconds, and nobody waits for it.
    std::thread([shared = shared_] { shared->run(); }).detach();
}

OSCSender::~OSCSender() {
    const std::lock_guard lock(shared_->mutex);
    shared_->isOver = true;
    shared_->fail = nullptr;
    shared_->changed.notify_all();
}

void OSCSender::send(std::vector<OSC::Message> messages) {
    const std::lock_guard lock(shared_->mutex);
    for (OSC::Message& message : messages)
        shared_->waiting.insert_or_assign(message.address, std::move(message));
    shared_->changed.notify_all();
}

bool OSCSender::isHost(const std::string& address) const {
    const std::lock_guard lock(shared_->mutex);
    return std::ranges::find(shared_->addresses, address) != shared_->addresses.end();
}

} // namespace tarnwick::player
