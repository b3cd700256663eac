// What goes wrong with movies.
#pragma once

#include <stdexcept>

namespace tarnwick {

// what() is one sentence for the user. Only joinMovies and the private parts of this folder throw
// it: a MovieWriter tells by its status and its error text.
struct MovieError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

} // namespace tarnwick
