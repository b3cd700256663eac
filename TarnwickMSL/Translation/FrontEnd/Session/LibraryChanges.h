// Whether a program changes the standard library itself.
#pragma once

#include <vector>

namespace clang {
class Decl;
} // namespace clang

namespace tarnwick::msl {

// Whether a declaration of the program cannot be removed without trace: it declares something of
// the library again, adds to its namespaces, specialises one of its templates, or is visible from
// outside of its scope (a friend).
bool changesLibrary(const std::vector<clang::Decl*>& program);

} // namespace tarnwick::msl
