// The parameters of a function in the program's tokens: their names and address spaces.
#pragma once

#include "TarnwickMSL/Translation/FrontEnd/Scopes.h"

#include <llvm/ADT/ArrayRef.h>
#include <llvm/ADT/SmallVector.h>
#include <llvm/ADT/StringRef.h>

namespace tarnwick::msl {

struct Parameter {
    std::size_t name = 0;   // its token; 0 if it has none
    std::size_t nameAt = 0; // without a name: the token before which one may be; 0 if none may
    llvm::StringRef space = "thread";
    bool isReference = false;
};
using Parameters = llvm::SmallVector<Parameter, 4>;

// The parameters of the function whose declaration is the tokens [first, body), and at the end the
// object of a method, which has no name. Empty if the declaration has no parentheses.
Parameters parametersOf(llvm::ArrayRef<clang::Token> tokens, const Scopes& scopes,
                        std::size_t first, std::size_t body);

} // namespace tarnwick::msl
