// What the clients of a local server may take.
#pragma once

#include <cstddef>

namespace tarnwick {

// Connections above a number are answered with 503, longer requests with 400; slower clients are
// disconnected.
struct ServeLimits {
    int connections = 64;
    int connectionsOfOne = 48; // of one address
    int streams = 32;          // of events, which are connections too
    std::size_t requestBytes = 16 << 10;
    double requestSeconds = 5; // until a request is read
    double answerSeconds = 30; // until its answer is written
    double eventSeconds = 5;   // until an event is written
    double beatSeconds = 10;   // between the events of a stream
};

} // namespace tarnwick
