// The functions of the standard library that a program needs.
//
// Clang's code generator defines a function at its first use if it was told of the function before,
// or if the function is a member of a class. Each program needs few of the library's functions, so
// it is told of these alone.
#pragma once

#include <llvm/ADT/DenseMap.h>
#include <llvm/ADT/SmallVector.h>

#include <vector>

namespace clang {
class Decl;
class FunctionDecl;
} // namespace clang

namespace tarnwick::msl {

class LibraryUses {
  public:
    // The library's definitions outside of classes, and instances of templates, that the
    // declarations and functions use, directly or not.
    std::vector<clang::FunctionDecl*> of(const std::vector<clang::Decl*>& program,
                                         const std::vector<const clang::FunctionDecl*>& functions);

  private:
    using Uses = llvm::SmallVector<const clang::FunctionDecl*, 4>;
    // What each function of the precompiled library uses directly.
    llvm::DenseMap<const clang::FunctionDecl*, Uses> known;

    Uses direct(const clang::FunctionDecl& definition);
};

} // namespace tarnwick::msl
