// The optimising passes of LLVM, in the combinations that the steps use.
#pragma once

#include <llvm/IR/PassManager.h>

namespace tarnwick::msl {

// Owns the analyses of the functions of one module. After changing a function directly, call
// `forget`. No combination reassociates, because that breaks noise functions that use the fraction
// of a large number.
class Optimiser {
  public:
    explicit Optimiser(llvm::Module& module);
    ~Optimiser();
    Optimiser(const Optimiser&) = delete;
    Optimiser& operator=(const Optimiser&) = delete;

    void
    cleanLightly(llvm::Function& function);     // memory to values, common subexpressions, branches
    void combine(llvm::Function& function);     // instructions, after cleanLightly
    void clean(llvm::Function& function);       // cleanLightly and combine
    void unrollLoops(llvm::Function& function); // those of few constant rounds; `clean` comes next
    void finish(llvm::Function& function);      // once, for a function without calls
    void dropCopies(llvm::Function& function);  // of memory that could be used itself
    void tidy(llvm::Function& function);        // after a step that leaves dead code
    void dropDeadCode(llvm::Function& function);
    void foldInitialisers(llvm::Module& module); // of constants that need code to be made

    // Whether a loop has a constant number of rounds that is small enough to unroll.
    bool hasShortLoops(llvm::Function& function);

    void forget(llvm::Function& function);
    llvm::FunctionAnalysisManager& analyses();

  private:
    struct Managers;
    std::unique_ptr<Managers> managers_;
};

} // namespace tarnwick::msl
