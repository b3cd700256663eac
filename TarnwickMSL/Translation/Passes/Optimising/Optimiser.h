// The optimising passes, in the few combinations in which the other steps use them.
#pragma once

#include <llvm/IR/PassManager.h>

namespace tarnwick::msl {

// Holds the analyses of one module's functions; whoever changes a function by hand says so through
// `forget`. None of it reassociates: noise that folds a large number's fraction falls apart.
class Optimiser {
  public:
    explicit Optimiser(llvm::Module& module);
    ~Optimiser();
    Optimiser(const Optimiser&) = delete;
    Optimiser& operator=(const Optimiser&) = delete;

    void cleanLightly(llvm::Function& function); // memory into values, repetitions, plain branches
    void clean(llvm::Function& function);        // and the combining of instructions
    void unrollLoops(llvm::Function& function);  // those with a small constant number of rounds
    void finish(llvm::Function& function);       // once, for a function that has everything in it
    void tidy(llvm::Function& function);         // after a step that leaves dead code behind
    void dropDeadCode(llvm::Function& function);
    void foldInitialisers(llvm::Module& module); // of constants that need code to be made

    // Whether some loop runs a constant number of times that is small enough to unroll.
    bool hasShortLoops(llvm::Function& function);

    void forget(llvm::Function& function);
    llvm::FunctionAnalysisManager& analyses();

  private:
    struct Managers;
    std::unique_ptr<Managers> managers_;
};

} // namespace tarnwick::msl
