// The record that a queue and its timers share.
#pragma once

#define ASIO_STANDALONE
#include <asio/io_context.hpp>

namespace tarnwick {

struct DispatchContext {
    asio::io_context io{1}; // run by one thread, so that its handlers are serial without a strand
};

} // namespace tarnwick
