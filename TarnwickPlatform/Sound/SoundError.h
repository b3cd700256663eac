// The error of sound devices.
#pragma once

#include <stdexcept>

namespace tarnwick {

// what() is one sentence for the user.
struct SoundError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

} // namespace tarnwick
