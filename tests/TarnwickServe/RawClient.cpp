#include "tests/TarnwickServe/RawClient.h"

#include "TarnwickBase/Precondition.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <cstdlib>
#include <unistd.h>

namespace tarnwick {

RawClient::RawClient(int port) : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    precondition(connect(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0,
                 "The server that a test made accepts connections.");
}

RawClient::~RawClient() {
    close(socket_);
}

bool RawClient::send(std::string_view bytes) {
    while (!bytes.empty()) {
        const auto sent = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

std::string RawClient::readTo(std::string_view text) {
    std::string all;
    char bytes[4096];
    while (text.empty() || all.find(text) == std::string::npos) {
        const auto count = recv(socket_, bytes, sizeof bytes, 0);
        if (count <= 0)
            break;
        all.append(bytes, static_cast<std::size_t>(count));
    }
    return all;
}

std::string RawClient::readAll() {
    return readTo({});
}

std::string request(int port, std::string_view target, std::string_view method) {
    return std::string(method) + " " + std::string(target) +
           " HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(port) + "\r\n\r\n";
}

std::string answerTo(int port, std::string_view bytes) {
    RawClient client(port);
    client.send(bytes);
    return client.readAll();
}

int statusOf(std::string_view answer) {
    constexpr std::string_view version = "HTTP/1.1 ";
    return answer.starts_with(version) ? std::atoi(answer.data() + version.size()) : 0;
}

std::string bodyOf(std::string_view answer) {
    const std::size_t end = answer.find("\r\n\r\n");
    return end == answer.npos ? "" : std::string(answer.substr(end + 4));
}

} // namespace tarnwick
