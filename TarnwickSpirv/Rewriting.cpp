#include "TarnwickSpirv/Rewriting.h"

#include "TarnwickSpirv/Interface.h"

namespace tarnwick::spirv {

void undecorate(Module& module, Id target) {
    Words kept;
    eachInstruction(module.annotations, [&](const Instruction& each) {
        if (each.operands[0] != target)
            append(kept, each.op, each.operands);
    });
    module.annotations = std::move(kept);
}

void changeStorage(Module& module, Id variable, spv::StorageClass storage) {
    undecorate(module, variable);
    module.redeclare(variable, storage);
    Words changed; // pointers into the variable have another type now
    eachInstruction(module.functions, [&](const Instruction& each) {
        Words operands(each.operands.begin(), each.operands.end());
        const bool isChain =
            each.op == spv::Op::OpAccessChain || each.op == spv::Op::OpInBoundsAccessChain;
        if (isChain && operands[2] == variable)
            operands[0] = module.pointer(storage, module.pointerType(operands[0]).pointee);
        append(changed, each.op, operands);
    });
    module.functions = std::move(changed);
}

void makePrivate(Module& module, Id variable) {
    changeStorage(module, variable, spv::StorageClass::Private);
}

Id renameMain(Module& module) {
    const Id renamed = module.newId();
    Words changed;
    eachInstruction(module.functions, [&](const Instruction& each) {
        Words operands(each.operands.begin(), each.operands.end());
        if (each.op == spv::Op::OpFunction && operands[1] == module.main())
            operands[1] = renamed;
        append(changed, each.op, operands);
    });
    module.functions = std::move(changed);
    return renamed;
}

void removeFunction(Module& module, Id function) {
    Words kept;
    bool isIn = false;
    eachInstruction(module.functions, [&](const Instruction& each) {
        if (each.op == spv::Op::OpFunction)
            isIn = each.operands[1] == function;
        if (!isIn)
            append(kept, each.op, each.operands);
    });
    module.functions = std::move(kept);
}

} // namespace tarnwick::spirv
