// The host cannot show the saver: what() is one sentence.
#pragma once

#include <stdexcept>

namespace tarnwick {

struct HostError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

} // namespace tarnwick
