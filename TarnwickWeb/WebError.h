// The error of making a page.
#pragma once

#include <stdexcept>
#include <string>

namespace tarnwick {

// what() is one sentence for the user.
struct WebError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

} // namespace tarnwick
