#include "TarnwickMSL/Translation/Passes/Calls/GlobalConstructors.h"

#include <llvm/IR/Constants.h>
#include <llvm/IR/Module.h>

namespace tarnwick::msl {

using namespace llvm;

static constexpr StringLiteral listName = "llvm.global_ctors";
static constexpr unsigned priority = 65535; // the default

std::vector<Function*> constructors(const Module& program) {
    std::vector<Function*> found;
    const GlobalVariable* all = program.getNamedGlobal(listName);
    auto* list =
        all && all->hasInitializer() ? dyn_cast<ConstantArray>(all->getInitializer()) : nullptr;
    for (unsigned i = 0; list && i < list->getNumOperands(); i++)
        if (auto* function = dyn_cast<Function>(list->getOperand(i)->getOperand(1)))
            found.push_back(function);
    return found;
}

void setConstructors(Module& program, const std::vector<Function*>& functions) {
    if (GlobalVariable* old = program.getNamedGlobal(listName))
        old->eraseFromParent();
    if (functions.empty())
        return;
    LLVMContext& context = program.getContext();
    auto* word = Type::getInt32Ty(context);
    auto* pointer = PointerType::get(context, 0);
    auto* entry = StructType::get(word, pointer, pointer);
    SmallVector<Constant*, 8> list;
    for (Function* function : functions)
        list.push_back(ConstantStruct::get(entry, ConstantInt::get(word, priority), function,
                                           ConstantPointerNull::get(pointer)));
    auto* type = ArrayType::get(entry, list.size());
    new GlobalVariable(program, type, false, GlobalValue::AppendingLinkage,
                       ConstantArray::get(type, list), listName, nullptr,
                       GlobalValue::NotThreadLocal, 0u);
}

} // namespace tarnwick::msl
