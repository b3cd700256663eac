// The functions of the standard library that a program needs.
//
// Clang's code generator defines a function at its first use if it was told of the function before,
// or if the function is a member of a class. Each program needs few of the library's functions, so
// it is told of these alone.
#pragma once

#include "TarnwickMSL/Translation/FrontEnd/Session/Wrappers.h"

#include <llvm/ADT/DenseMap.h>
#include <llvm/ADT/SmallVector.h>

#include <vector>

namespace clang {
class Decl;
class FunctionDecl;
class VarDecl;
} // namespace clang

namespace tarnwick::msl {

class LibraryUses {
  public:
    struct Found {
        // The library's definitions outside of classes, and instances of templates.
        std::vector<clang::FunctionDecl*> functions;
        std::vector<Wrapper> wrappers; // among them
        std::vector<clang::VarDecl*> variables;
    };
    // What the declarations and functions use, directly or not.
    Found of(const std::vector<clang::Decl*>& program,
             const std::vector<const clang::FunctionDecl*>& functions);

  private:
    struct Uses {
        llvm::SmallVector<const clang::FunctionDecl*, 4> functions;
        llvm::SmallVector<const clang::VarDecl*, 1> variables;
        unsigned builtIn = 0; // see Wrapper
    };
    // What each function of the precompiled library uses directly.
    llvm::DenseMap<const clang::FunctionDecl*, Uses> known;

    Uses direct(const clang::FunctionDecl& definition);
};

} // namespace tarnwick::msl
