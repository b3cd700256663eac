// The error of documents of settings and keys.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace tarnwick {

// Text that is no such document, or values that a document has no form for. what() is one sentence
// that says where and why.
struct DocumentError : std::runtime_error {
    enum class Cause : std::uint8_t { broken, otherKind };

    explicit DocumentError(const std::string& sentence, Cause cause = Cause::broken)
        : std::runtime_error(sentence), cause(cause) {}

    Cause cause; // otherKind: an object of JSON that has nothing of the document
};

} // namespace tarnwick
