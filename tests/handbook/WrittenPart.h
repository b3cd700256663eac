// The part of a page of docs/ that a test writes: between the line
// "<!-- written by handbookTests -->" and the line "<!-- end -->".
#pragma once

#include <string>

namespace tarnwick {

// A file of docs/ as text.
std::string pageText(const std::string& name);

// Compares the part with the text. With TARNWICK_REWRITE=1 in the environment it writes the part
// first.
void expectWrittenPart(const std::string& page, const std::string& wanted);

} // namespace tarnwick
