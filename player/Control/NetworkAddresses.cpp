#include "player/Control/NetworkAddresses.h"

#include <arpa/inet.h>
#include <net/if.h>
#include <netinet/in.h>

#include <array>
#include <ifaddrs.h>

namespace tarnwick::player {

std::vector<NetworkAddress> networkAddresses() {
    std::vector<NetworkAddress> addresses;
    ifaddrs* first = nullptr;
    if (getifaddrs(&first) != 0)
        return addresses;
    for (const ifaddrs* one = first; one != nullptr; one = one->ifa_next) {
        if (one->ifa_addr == nullptr || one->ifa_addr->sa_family != AF_INET ||
            (one->ifa_flags & IFF_LOOPBACK) != 0 || (one->ifa_flags & IFF_UP) == 0)
            continue;
        std::array<char, INET_ADDRSTRLEN> text{};
        inet_ntop(AF_INET, &reinterpret_cast<const sockaddr_in*>(one->ifa_addr)->sin_addr,
                  text.data(), text.size());
        addresses.push_back({one->ifa_name, text.data()});
    }
    freeifaddrs(first);
    return addresses;
}

} // namespace tarnwick::player
