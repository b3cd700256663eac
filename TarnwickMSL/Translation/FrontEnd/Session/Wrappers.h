// Functions of the standard library that only call a function built into Clang, as sin and max do.
//
// A third of the library's functions in a program are such. While code is generated, Clang takes their
// calls for calls of the built-in function, so that they need no body to be generated and inlined.
// While it parses, they are functions like others: their arguments are converted as their
// parameters demand, which calls of built-in functions do not do.
#pragma once

#include <vector>

namespace clang {
class ASTContext;
class FunctionDecl;
} // namespace clang

namespace tarnwick::msl {

struct Wrapper {
    clang::FunctionDecl* function = nullptr;
    unsigned builtIn = 0; // clang::Builtin::ID
};

// The built-in function (clang::Builtin::ID) that the definition calls with its parameters, and
// whose result it returns; 0 if it is no such wrapper. Functions with options for floating-point
// numbers of their own (`#pragma float_control`) are none, since the options of a built-in
// function's call are those of the caller.
unsigned wrappedBuiltIn(const clang::FunctionDecl& definition);

// While it exists, calls of the wrappers are calls of the built-in functions.
class DirectCalls {
  public:
    DirectCalls(clang::ASTContext& context, std::vector<Wrapper> wrappers);
    ~DirectCalls();
    DirectCalls(const DirectCalls&) = delete;
    DirectCalls& operator=(const DirectCalls&) = delete;

  private:
    std::vector<Wrapper> wrappers;
};

} // namespace tarnwick::msl
