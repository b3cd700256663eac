// What a queue and its timers share.
#pragma once

#include "TarnwickPlatform/Dispatch/DispatchQueue.h"

#define ASIO_STANDALONE
#include <asio/io_context.hpp>

namespace tarnwick {

struct DispatchQueue::Context {
    asio::io_context io{1}; // run by one thread, so that its handlers are serial without a strand
};

} // namespace tarnwick
