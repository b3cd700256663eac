// The settings of a URLSession.
#pragma once

#include "TarnwickPlatform/Net/Headers.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace tarnwick {

struct SessionConfiguration {
    Headers additionalHeaders;          // added to requests that have no field of that name
    double timeout = 30;                // seconds for a whole request without its own; > 0
    double connectTimeout = 15;         // seconds for look-up, connection and TLS; > 0
    std::size_t headerLimit = 64 << 10; // bytes of all header lines of one answer, at most
    std::size_t bodyLimit = 16 << 20;   // bytes of a body that data() keeps, at most
    int redirectLimit = 20;

    // For tests. A file of certificates (PEM) that are trusted instead of the system's; and
    // "HOST:PORT:HOST:PORT": connections to the first go to the second, without a proxy.
    std::filesystem::path certificateFile;
    std::vector<std::string> connectTo;
};

} // namespace tarnwick
