// The addresses of this machine's network interfaces.
#pragma once

#include <string>
#include <vector>

namespace tarnwick::player {

inline constexpr const char* loopbackAddress = "127.0.0.1";
inline constexpr const char* everyAddress = "0.0.0.0";

struct NetworkAddress {
    std::string interface; // "eth0"
    std::string address;   // of IPv4
};

// Without loopback; empty without a network.
std::vector<NetworkAddress> networkAddresses();

} // namespace tarnwick::player
