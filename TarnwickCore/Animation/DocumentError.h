// The error of documents of settings and keys.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace tarnwick {

// A text that is not a valid document, or values that JSON cannot represent. what() is one sentence
// with the place and the reason.
struct DocumentError : std::runtime_error {
    enum class Cause : std::uint8_t { broken, otherKind };

    explicit DocumentError(const std::string& sentence, Cause cause = Cause::broken)
        : std::runtime_error(sentence), cause(cause) {}

    Cause cause; // otherKind: a JSON object without any member of the document
};

} // namespace tarnwick
