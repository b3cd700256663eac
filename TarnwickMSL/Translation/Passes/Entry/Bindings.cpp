#include "TarnwickMSL/Translation/Passes/Entry/Bindings.h"

#include "TarnwickMSL/Translation/Passes/Calls/BuiltInCalls.h"

#include <llvm/ADT/DenseSet.h>
#include <llvm/IR/Constants.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/InstrTypes.h>

namespace tarnwick::msl {

using namespace llvm;

static bool isUsed(const ShaderModule& shader, const InterfaceVariable& variable) {
    GlobalVariable* global = shader.module->getNamedGlobal(variable.global);
    if (!global)
        return false;
    global->removeDeadConstantUsers();
    return !global->use_empty();
}

static DenseSet<std::uint64_t> usedTextures(const Function& main) {
    DenseSet<std::uint64_t> used;
    for (const Instruction& instruction : instructions(main)) {
        auto* call = dyn_cast<CallBase>(&instruction);
        if (!call || !takesTexture(builtInName(*call)))
            continue;
        if (auto* handle = dyn_cast<ConstantInt>(call->getArgOperand(0)))
            used.insert(handle->getZExtValue());
    }
    return used;
}

void assignBindings(ShaderModule& shader, const Target& target) {
    DenseSet<std::uint64_t> textures = usedTextures(*shader.main);
    std::erase_if(shader.interface,
                  [&](const auto& variable) { return !isUsed(shader, variable); });
    std::erase_if(shader.textures,
                  [&](const auto& texture) { return !textures.contains(texture.index); });
    std::uint32_t next = firstBinding(shader.stage);
    for (InterfaceVariable& variable : shader.interface)
        if (hasBinding(variable.kind))
            variable.binding = next++;
    for (TextureVariable& texture : shader.textures)
        texture.binding = next++;
    for (InterfaceVariable& variable : shader.interface)
        if (variable.kind == InterfaceKind::pushConstant && target.language == Language::wgsl)
            variable.binding = next++;
}

} // namespace tarnwick::msl
