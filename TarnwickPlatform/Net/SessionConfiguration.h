// The settings of a URLSession.
#pragma once

#include "TarnwickPlatform/Net/Headers.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace tarnwick {

struct SessionConfiguration {
    Headers additionalHeaders;          // for each request that has no field of that name
    double timeout = 30;                // seconds for a whole request that says none; > 0
    double connectTimeout = 15;         // seconds until name, connection and TLS stand; > 0
    std::size_t headerLimit = 64 << 10; // bytes of all header lines of one answer
    std::size_t bodyLimit = 16 << 20;   // bytes of a body that data() holds
    int redirectLimit = 20;

    // For tests. A file of certificates (PEM) that are trusted in place of the system's, and
    // "HOST:PORT:HOST:PORT": connections meant for the first go to the second (then without a
    // proxy).
    std::filesystem::path certificateFile;
    std::vector<std::string> connectTo;
};

} // namespace tarnwick
