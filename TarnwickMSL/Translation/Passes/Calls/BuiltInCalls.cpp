#include "TarnwickMSL/Translation/Passes/Calls/BuiltInCalls.h"

#include <llvm/ADT/StringSwitch.h>
#include <llvm/IR/InstrTypes.h>
#include <llvm/IR/Module.h>

namespace tarnwick::msl {

using namespace llvm;

static constexpr StringLiteral prefix = "msl.";

static StringRef nameOf(StringRef symbol) {
    return symbol.consume_front(prefix) ? symbol.take_until([](char c) { return c == '.'; })
                                        : StringRef();
}

StringRef builtInName(const CallBase& call) {
    const Function* callee = call.getCalledFunction();
    return callee && callee->isDeclaration() ? nameOf(callee->getName()) : StringRef();
}

bool takesSampler(StringRef name) {
    return (name.starts_with("sample") && name != "samples") || name.starts_with("gather") ||
           name == "lod";
}

bool isTexelAtomic(StringRef name) {
    return name.starts_with("texel_");
}

bool changesTexture(StringRef name) {
    return name == "write" || isTexelAtomic(name);
}

std::optional<unsigned> levelOperand(StringRef name) {
    return name == "read" ? std::optional(2u) : name == "write" ? std::optional(3u) : std::nullopt;
}

bool takesTexture(StringRef name) {
    return takesSampler(name) || isTexelAtomic(name) ||
           StringSwitch<bool>(name)
               .Cases("read", "write", "width", "height", "depth", true)
               .Cases("levels", "samples", "layers", true)
               .Default(false);
}

// Its value depends on the neighbouring invocations, or it waits for them.
static bool isConvergent(StringRef name) {
    return StringSwitch<bool>(name)
        .Cases("dfdx", "dfdy", "fwidth", "barrier", "fence", "discard", true)
        .Cases("sample", "sample_bias", "sample_compare", "sample_compare_bias", "lod", true)
        // Not of its neighbours, but calls that ask about two spaces must not be joined.
        .Cases("in_device", "in_constant", "in_thread", "in_threadgroup", true)
        .Default(name.starts_with("simd_") || name.starts_with("quad_"));
}

static MemoryEffects effects(StringRef name, bool writesTextures) {
    if (name == "discard" || name == "barrier" || name == "fence" || changesTexture(name) ||
        name.starts_with("atomic") || name.starts_with("log_") || name.starts_with("ray_query_"))
        return MemoryEffects::unknown();
    if (name == "control_point")
        return MemoryEffects::argMemOnly(ModRefInfo::Mod);
    if (name.starts_with("mesh_")) // reads a record, writes outputs or threadgroup memory
        return MemoryEffects::argMemOnly(ModRefInfo::Ref) |
               MemoryEffects::inaccessibleMemOnly(ModRefInfo::Mod);
    if (name == "is_helper") // `discard` changes it
        return MemoryEffects::readOnly();
    if (name.starts_with("interpolate"))
        return MemoryEffects::argMemOnly(ModRefInfo::Ref);
    if (takesTexture(name) && writesTextures)
        return MemoryEffects::readOnly();
    return MemoryEffects::none();
}

// Whoever calls a function that depends on its neighbours depends on them itself: without this
// two calls in the two ways of a branch would be joined before it.
static void spreadConvergence(Module& module) {
    for (bool hasChanged = true; hasChanged;) {
        hasChanged = false;
        for (Function& function : module)
            for (User* user : function.users()) {
                auto* call = dyn_cast<CallBase>(user);
                if (!function.isConvergent() || !call || call->getFunction()->isConvergent())
                    continue;
                call->getFunction()->setConvergent();
                hasChanged = true;
            }
    }
}

void describeBuiltIns(Module& module) {
    bool writesTextures = any_of(module, [](const Function& function) {
        return changesTexture(nameOf(function.getName()));
    });
    for (Function& function : module) {
        StringRef name = nameOf(function.getName());
        if (name.empty() || !function.isDeclaration())
            continue;
        function.setAttributes(AttributeList());
        function.setMemoryEffects(effects(name, writesTextures));
        function.setDoesNotThrow();
        function.setWillReturn();
        if (isConvergent(name))
            function.setConvergent();
        for (User* user : function.users())
            if (auto* call = dyn_cast<CallBase>(user))
                call->setAttributes(AttributeList());
    }
    spreadConvergence(module);
}

} // namespace tarnwick::msl
