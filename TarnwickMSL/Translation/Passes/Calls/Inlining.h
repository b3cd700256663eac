// Everything that an entry point calls goes into it, from the leaves of the calls up.
#pragma once

#include <string>
#include <vector>

namespace llvm {
class CallBase;
class Function;
class Module;
} // namespace llvm

namespace tarnwick::msl {

class Optimiser;

// Takes each function of the module that the roots reach, callees first, makes it small and puts
// its callees into it. Functions that are no roots are gone afterwards. Throws TranslationError on
// recursion and on calls of what is not known.
void inlineEverything(llvm::Module& module, const std::vector<llvm::Function*>& roots,
                      Optimiser& optimiser);

// Inlines all that one function calls into it, and leaves the others as they are.
void inlineInto(llvm::Function& function, Optimiser& optimiser);

// Puts the one callee in; the call is gone afterwards.
void inlineCall(llvm::CallBase& call);

} // namespace tarnwick::msl
