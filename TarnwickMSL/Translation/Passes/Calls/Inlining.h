// Inlines all functions that an entry point calls, callees first.
#pragma once

#include <string>
#include <vector>

namespace llvm {
class CallBase;
class Function;
class Module;
} // namespace llvm

namespace tarnwick::msl {

class KeptFunctions;
class Optimiser;

// Optimises each function that the roots reach and inlines its callees into it, callees first.
// Removes all functions that are not roots. Throws TranslationError on recursion and on calls of
// unknown functions. `kept` may be null; it has cleaned functions of a module before, and takes
// those of this one.
void inlineEverything(llvm::Module& module, const std::vector<llvm::Function*>& roots,
                      Optimiser& optimiser, KeptFunctions* kept);

// Inlines all calls in one function; other functions are unchanged.
void inlineInto(llvm::Function& function, Optimiser& optimiser);

// Inlines one call, which is removed.
void inlineCall(llvm::CallBase& call);

} // namespace tarnwick::msl
