// The error of serving episodes.
#pragma once

#include <stdexcept>

namespace tarnwick {

// what() is one sentence for the user.
struct ServeError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

} // namespace tarnwick
