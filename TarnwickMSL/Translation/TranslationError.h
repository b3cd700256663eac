// What a step after the front end cannot translate.
#pragma once

#include <stdexcept>
#include <string>

namespace tarnwick::msl {

// what() is the message's text without place.
struct TranslationError : std::runtime_error {
    using std::runtime_error::runtime_error;
    TranslationError(const std::string& text, std::string place)
        : std::runtime_error(text), place(std::move(place)) {}

    std::string place; // "file:line:column"; empty where it is not known
};

} // namespace tarnwick::msl
