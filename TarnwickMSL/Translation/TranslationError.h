// What a step after the front end cannot translate; what() is the message's text without place.
#pragma once

#include <stdexcept>

namespace tarnwick::msl {

struct TranslationError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

} // namespace tarnwick::msl
