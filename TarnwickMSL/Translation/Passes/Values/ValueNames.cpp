#include "TarnwickMSL/Translation/Passes/Values/ValueNames.h"

#include <llvm/IR/InstIterator.h>
#include <llvm/IR/Instructions.h>
#include <llvm/IR/Module.h>

namespace tarnwick::msl {

using namespace llvm;

// Whether Clang made the variable for the program's own one: not for a copy of a parameter, a
// result or a temporary value, whose names say nothing.
static bool isOfProgram(const AllocaInst& variable) {
    const StringRef name = variable.getName();
    return !name.empty() && !name.contains('.') && !name.starts_with("retval") &&
           !name.starts_with("tmp") && !name.starts_with("__");
}

void nameStoredValues(Module& module) {
    if (module.getContext().shouldDiscardValueNames())
        return;
    for (Function& function : module)
        for (Instruction& instruction : instructions(function)) {
            auto* store = dyn_cast<StoreInst>(&instruction);
            auto* variable = store ? dyn_cast<AllocaInst>(store->getPointerOperand()) : nullptr;
            auto* value = variable ? dyn_cast<Instruction>(store->getValueOperand()) : nullptr;
            if (value && isOfProgram(*variable) && !isa<AllocaInst, LoadInst>(value))
                value->setName(variable->getName());
        }
}

} // namespace tarnwick::msl
