#include "TarnwickMSL/Translation/Passes/Forms/Work.h"

#include "TarnwickMSL/Translation/Passes/Optimising/Optimiser.h"

namespace tarnwick::msl {

Work::Work(llvm::Module& program, const std::vector<EntrySignature>& entries)
    : program(program), entries(entries) {}

Work::~Work() = default;

Optimiser& Work::optimiser() {
    if (optimised_ != &module())
        optimiser_ = std::make_unique<Optimiser>(module());
    optimised_ = &module();
    return *optimiser_;
}

void Work::forgetMainIf(bool isChanged) {
    if (isChanged)
        optimiser().forget(main());
}

} // namespace tarnwick::msl
