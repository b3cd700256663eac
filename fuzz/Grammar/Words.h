// The words of the language by class. A word may take the place of another one of its class.
#pragma once

#include <span>
#include <string_view>

namespace tarnwick::fuzz {

using WordClass = std::span<const std::string_view>;

std::span<const std::string_view> edgeNumbers();
// Texts with $e for an expression, $s for a statement and $n for a number.
std::span<const std::string_view> statementForms();
std::span<const std::string_view> expressionForms();

// Whether a word is of the language or its library without a class, such as `for`.
bool isOfLibrary(std::string_view word);

// The class of a word; empty for names that a program makes.
WordClass classOf(std::string_view word);

} // namespace tarnwick::fuzz
