#include "TarnwickMSL/Translation/Passes/Memory/Handles.h"

#include "TarnwickMSL/SamplerBits.h"
#include "TarnwickMSL/Translation/Passes/Calls/BuiltInCalls.h"
#include "TarnwickMSL/Translation/Passes/Memory/CallChoices.h"
#include "TarnwickMSL/Translation/Passes/Memory/TextureLevels.h"
#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/ADT/SetVector.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/InstIterator.h>

namespace tarnwick::msl {

using namespace llvm;

using Choices = SmallSetVector<Constant*, 8>;

// Adds the constants that the value may be. Returns false if it may be something else.
static bool collect(Value* value, Choices& choices, SmallPtrSetImpl<Value*>& seen) {
    if (!seen.insert(value).second || isa<UndefValue>(value))
        return true;
    if (auto* constant = dyn_cast<ConstantInt>(value)) {
        choices.insert(constant);
        return true;
    }
    if (auto* select = dyn_cast<SelectInst>(value))
        return collect(select->getTrueValue(), choices, seen) &&
               collect(select->getFalseValue(), choices, seen);
    if (auto* phi = dyn_cast<PHINode>(value))
        return all_of(phi->incoming_values(),
                      [&](Use& use) { return collect(use.get(), choices, seen); });
    return false;
}

// Whether "2d.f32" of msl.sample.2d.f32 is the shape and component of the argument. Only depth
// textures can be compared.
static bool fits(const TextureVariable& texture, StringRef symbol) {
    SmallVector<StringRef, 5> words;
    symbol.split(words, '.');
    if (words.size() < 3)
        return true;
    static constexpr StringLiteral shapes[] = {"",   "buffer",   "1d",        "1d_array",
                                               "2d", "2d_array", "2d_ms",     "2d_ms_array",
                                               "3d", "cube",     "cube_array"};
    if (shapes[static_cast<std::size_t>(texture.shape)] != words[2] ||
        (words[1].contains("compare") && !texture.isDepth))
        return false;
    static constexpr StringLiteral components[] = {"", "f32", "s32", "u32", "u64"};
    return words.size() < 4 || components[static_cast<std::size_t>(texture.component)] == words[3];
}

static Choices textureChoices(const ShaderModule& shader, CallBase& call) {
    Choices choices;
    SmallPtrSet<Value*, 8> seen;
    if (collect(call.getArgOperand(0), choices, seen))
        return choices;
    choices.clear();
    for (const TextureVariable& texture : shader.textures)
        if (fits(texture, call.getCalledFunction()->getName()))
            choices.insert(ConstantInt::get(call.getContext(), APInt(32, texture.index)));
    return choices;
}

static Choices samplerChoices(const ShaderModule& shader, CallBase& call) {
    Choices choices;
    SmallPtrSet<Value*, 8> seen;
    if (collect(call.getArgOperand(1), choices, seen))
        return choices;
    choices.clear();
    for (std::uint32_t index : shader.samplers)
        choices.insert(ConstantInt::get(call.getContext(), APInt(64, samplerArgumentBit | index)));
    return choices;
}

// All are called, side by side, and one is taken: under a condition an implicit level of detail
// would lack its neighbours.
static void splitRead(CallBase& call, unsigned operand, const Choices& choices) {
    IRBuilder<> builder(&call);
    Value* chosen = nullptr;
    for (Constant* choice : choices) {
        auto* one = cast<CallBase>(builder.Insert(call.clone()));
        one->setArgOperand(operand, choice);
        chosen =
            chosen ? builder.CreateSelect(builder.CreateICmpEQ(call.getArgOperand(operand), choice),
                                          one, chosen)
                   : one;
    }
    call.replaceAllUsesWith(chosen);
    call.eraseFromParent();
}

static void split(CallBase& call, unsigned operand, const Choices& choices) {
    if (choices.empty())
        throw TranslationError(operand == 0 ? "The texture is not an argument of the entry point."
                                            : "The sampler must be known at compile time.");
    if (changesTexture(builtInName(call)))
        splitByValue(call, operand, choices.getArrayRef());
    else
        splitRead(call, operand, choices);
}

template <class Needs> static SmallVector<CallBase*, 8> callsThat(Function& main, Needs needs) {
    SmallVector<CallBase*, 8> calls;
    for (Instruction& instruction : instructions(main))
        if (auto* call = dyn_cast<CallBase>(&instruction);
            call && takesTexture(builtInName(*call)) && needs(*call))
            calls.push_back(call);
    return calls;
}

// Reads of absent textures give zero, and stores have no effect.
static bool dropAbsent(ShaderModule& shader) {
    auto calls = callsThat(*shader.main, [](CallBase& call) {
        auto* handle = dyn_cast<ConstantInt>(call.getArgOperand(0));
        return handle && handle->equalsInt(absentTexture);
    });
    for (CallBase* call : calls) {
        if (!call->getType()->isVoidTy())
            call->replaceAllUsesWith(Constant::getNullValue(call->getType()));
        call->eraseFromParent();
    }
    return !calls.empty();
}

bool resolveHandles(ShaderModule& shader) {
    auto textures = callsThat(
        *shader.main, [](CallBase& call) { return !isa<ConstantInt>(call.getArgOperand(0)); });
    for (CallBase* call : textures)
        split(*call, 0, textureChoices(shader, *call));
    const bool hasAbsent = dropAbsent(shader);
    auto samplers = callsThat(*shader.main, [](CallBase& call) {
        return takesSampler(builtInName(call)) && !isa<ConstantInt>(call.getArgOperand(1));
    });
    for (CallBase* call : samplers)
        split(*call, 1, samplerChoices(shader, *call));
    bool hasLevels = resolveLevels(shader);
    return hasAbsent || hasLevels || !textures.empty() || !samplers.empty();
}

} // namespace tarnwick::msl
