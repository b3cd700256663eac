// The errors of the steps after the front end.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace tarnwick::msl {

// The program uses a feature without a translation. what() is the text of the message without its
// place.
struct TranslationError : std::runtime_error {
    explicit TranslationError(const std::string& text, std::string place = "")
        : std::runtime_error(text), place(std::move(place)) {}

    std::string place; // "file:line:column"; empty if unknown
};

// A step receives code that an earlier step should have removed: a bug of the compiler, not of the
// program. All have the same text for the user; `detail` names the step (Passes.h).
struct CompilerFault : TranslationError {
    explicit CompilerFault(std::string detail)
        : TranslationError("The compiler has a fault and cannot translate this code. Writing it "
                           "in another way may help; please report the program."),
          detail(std::move(detail)) {}

    std::string detail;
};

} // namespace tarnwick::msl
