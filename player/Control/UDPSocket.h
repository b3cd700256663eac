// A descriptor of a UDP socket that is closed with its owner.
#pragma once

#include <sys/socket.h>

#include <unistd.h>
#include <utility>

namespace tarnwick::player {

class UDPSocket {
  public:
    // Of AF_INET or AF_INET6; it does not block. Check isOpen().
    explicit UDPSocket(int family)
        : descriptor_(::socket(family, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {}
    ~UDPSocket() {
        if (isOpen())
            ::close(descriptor_);
    }
    UDPSocket(UDPSocket&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    UDPSocket& operator=(UDPSocket&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }

    bool isOpen() const { return descriptor_ >= 0; }
    int descriptor() const { return descriptor_; }

  private:
    int descriptor_;
};

} // namespace tarnwick::player
