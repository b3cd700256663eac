#include "TarnwickMSL/Translation/Passes/Memory/TextureLevels.h"

#include "TarnwickMSL/Translation/Passes/Calls/BuiltInCalls.h"
#include "TarnwickMSL/Translation/Passes/Memory/CallChoices.h"

#include <llvm/IR/Constants.h>
#include <llvm/IR/InstIterator.h>

namespace tarnwick::msl {

using namespace llvm;

static constexpr unsigned mostLevels = 15;

static bool isWritten(const ShaderModule& shader, const Value* handle) {
    auto* index = dyn_cast<ConstantInt>(handle);
    return index && any_of(shader.textures, [&](const TextureVariable& texture) {
               return texture.index == index->getZExtValue() && texture.isWritten;
           });
}

bool resolveLevels(ShaderModule& shader) {
    SmallVector<CallBase*, 8> calls;
    for (Instruction& instruction : instructions(*shader.main)) {
        auto* call = dyn_cast<CallBase>(&instruction);
        auto level = call ? levelOperand(builtInName(*call)) : std::nullopt;
        if (level && !isa<ConstantInt>(call->getArgOperand(*level)) &&
            isWritten(shader, call->getArgOperand(0)))
            calls.push_back(call);
    }
    SmallVector<Constant*, mostLevels> levels;
    for (unsigned level = 0; level < mostLevels; ++level)
        levels.push_back(ConstantInt::get(Type::getInt32Ty(shader.module->getContext()), level));
    for (CallBase* call : calls)
        splitByValue(*call, *levelOperand(builtInName(*call)), levels);
    return !calls.empty();
}

} // namespace tarnwick::msl
