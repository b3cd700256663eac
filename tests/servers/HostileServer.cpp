#include "tests/servers/HostileServer.h"

#include "TarnwickBase/Precondition.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <unistd.h>

namespace tarnwick {

std::string HostileConnection::readHead() {
    std::string head;
    char byte = 0;
    while (!head.ends_with("\r\n\r\n")) {
        if (recv(socket_, &byte, 1, 0) != 1)
            return {};
        head += byte;
    }
    return head;
}

bool HostileConnection::send(std::string_view bytes) {
    while (!bytes.empty()) {
        const auto sent = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

void HostileConnection::reset() {
    const linger none{.l_onoff = 1, .l_linger = 0};
    setsockopt(socket_, SOL_SOCKET, SO_LINGER, &none, sizeof none);
}

void HostileConnection::waitForClient() {
    char bytes[4096];
    while (recv(socket_, bytes, sizeof bytes, 0) > 0) {
    }
}

HostileServer::HostileServer(std::string answer)
    : HostileServer([answer = std::move(answer)](HostileConnection& connection) {
          connection.readHead();
          connection.send(answer);
      }) {}

HostileServer::HostileServer(Script script)
    : script_(std::move(script)), socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    precondition(bind(socket_, generic, size) == 0 && listen(socket_, 64) == 0 &&
                     getsockname(socket_, generic, &size) == 0,
                 "The loopback address has a free port.");
    port_ = ntohs(address.sin_port);
    acceptor_ = std::thread([this] { accept(); });
}

HostileServer::~HostileServer() {
    shutdown(socket_, SHUT_RDWR);
    acceptor_.join();
    {
        const std::scoped_lock lock(mutex_);
        for (const int each : open_)
            shutdown(each, SHUT_RDWR);
    }
    for (std::thread& thread : threads_)
        thread.join();
    close(socket_);
}

URL HostileServer::url(std::string_view target) const {
    const auto url = URL::parse("http://127.0.0.1:" + std::to_string(port_) + std::string(target));
    precondition(url.has_value(), "Tests ask for addresses that are some.");
    return *url;
}

int HostileServer::open() {
    const std::scoped_lock lock(mutex_);
    return static_cast<int>(open_.size());
}

void HostileServer::accept() {
    for (;;) {
        const int client = accept4(socket_, nullptr, nullptr, SOCK_CLOEXEC);
        if (client < 0)
            return;
        ++count_;
        const std::scoped_lock lock(mutex_);
        open_.push_back(client);
        threads_.emplace_back([this, client] {
            HostileConnection connection(client);
            script_(connection);
            const std::scoped_lock closing(mutex_);
            open_.remove(client);
            close(client);
        });
    }
}

} // namespace tarnwick
