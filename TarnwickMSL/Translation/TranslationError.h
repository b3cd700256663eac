// What a step after the front end cannot translate.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace tarnwick::msl {

// The program asks for what there is no translation of. what() is the message's text without place.
struct TranslationError : std::runtime_error {
    explicit TranslationError(const std::string& text, std::string place = "")
        : std::runtime_error(text), place(std::move(place)) {}

    std::string place; // "file:line:column"; empty where it is not known
};

// A step meets code that the steps before it should not have left: the compiler is wrong, not the
// program. All of them read alike for the user; `detail` names the step (Passes.h).
struct CompilerFault : TranslationError {
    explicit CompilerFault(std::string detail)
        : TranslationError("The compiler has a fault and cannot translate this code. Writing it "
                           "in another way may help; please report the program."),
          detail(std::move(detail)) {}

    std::string detail;
};

} // namespace tarnwick::msl
