// The error of movies.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace tarnwick {

// what() is one sentence for the user. Only joinMovies and the private parts of this folder throw
// it; a MovieWriter reports by its status and errorText.
struct MovieError : std::runtime_error {
    enum class Kind : std::uint8_t {
        parts,  // the parts to join cannot be read or do not fit together
        failed, // any other: of the encoder, the written file or the memory
    };

    explicit MovieError(const std::string& sentence, Kind kind = Kind::failed)
        : std::runtime_error(sentence), kind(kind) {}

    Kind kind;
};

} // namespace tarnwick
