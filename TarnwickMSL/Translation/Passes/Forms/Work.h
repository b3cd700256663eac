// All that a step of the compiler reads and changes.
#pragma once

#include "TarnwickMSL/Target.h"
#include "TarnwickMSL/Translation/ShaderModule.h"

#include <vector>

namespace tarnwick::msl {

class KeptFunctions;
class Optimiser;

// One compilation between two steps: first of the whole program, from the step `cut` on of one
// entry point.
struct Work {
    Work(llvm::Module& program, const std::vector<EntrySignature>& entries);
    ~Work();
    Work(const Work&) = delete;
    Work& operator=(const Work&) = delete;

    // The module that the next step works on: the shader's; the program's before a shader is made.
    llvm::Module& module() const { return shader.module ? *shader.module : program; }
    llvm::Function& main() const { return *shader.main; }
    // For module(); made when a step first asks.
    Optimiser& optimiser();
    // Drops all analyses of main if a step changed it by hand.
    void forgetMainIf(bool isChanged);

    llvm::Module& program;
    const std::vector<EntrySignature>& entries;
    const EntrySignature* entry = nullptr;    // null before `cut`
    std::vector<ConstantSignature> constants; // without a value
    Target target;
    KeptFunctions* kept = nullptr; // null if no function is kept for another program
    ShaderModule shader;           // empty before `cut`
    bool hasDeadCode = false;      // for the step `tidy`
    EntryPoint result;             // of the last step
    std::size_t fingerprint = 0;   // of the code when it was last checked

  private:
    std::unique_ptr<Optimiser> optimiser_; // destroyed before the module
    const llvm::Module* optimised_ = nullptr;
};

} // namespace tarnwick::msl
