#include "TarnwickMSL/Translation/Passes/Memory/AddressSpaces.h"

#include "TarnwickMSL/Translation/Passes/Calls/BuiltInCalls.h"
#include "TarnwickMSL/Translation/Passes/Memory/PointersInMemory.h"
#include "TarnwickMSL/Translation/Places.h"

#include <llvm/ADT/SetVector.h>
#include <llvm/ADT/SmallPtrSet.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/Instructions.h>

#include <optional>

namespace tarnwick::msl {

using namespace llvm;

namespace {

// As the names of the calls have them; empty: not known.
using Space = StringRef;

class SpaceFinder {
  public:
    explicit SpaceFinder(const ShaderModule& shader) : shader_(shader) {}

    // Returns the space of the pointer if only one is possible.
    std::optional<Space> spaceOf(const Value* pointer);

  private:
    void collect(const Value* pointer);
    Space spaceOf(const GlobalVariable& global) const;
    bool isInBuffer(const Value* pointer) const;

    const ShaderModule& shader_;
    SmallPtrSet<const Value*, 8> seen_;
    SmallSetVector<Space, 2> found_;
};

Space SpaceFinder::spaceOf(const GlobalVariable& global) const {
    for (const InterfaceVariable& variable : shader_.interface)
        if (variable.global == global.getName())
            return variable.kind == InterfaceKind::storageBuffer ? "device"
                   : variable.kind == InterfaceKind::workgroup   ? "threadgroup"
                                                                 : "constant";
    return global.isConstant() ? "constant" : "threadgroup";
}

bool SpaceFinder::isInBuffer(const Value* pointer) const {
    auto* global = dyn_cast<GlobalVariable>(baseOf(pointer));
    return global && global->isDeclaration();
}

void SpaceFinder::collect(const Value* pointer) {
    const Value* base = baseOf(pointer);
    if (!seen_.insert(base).second || isa<UndefValue, ConstantPointerNull>(base))
        return;
    if (auto* choice = dyn_cast<User>(base); choice && isa<PHINode, SelectInst>(choice)) {
        for (const Use& operand : choice->operands())
            if (operand->getType()->isPointerTy())
                collect(operand);
    } else if (auto* global = dyn_cast<GlobalVariable>(base)) {
        found_.insert(spaceOf(*global));
    } else if (isa<AllocaInst>(base)) {
        found_.insert("thread");
    } else if (auto* load = dyn_cast<LoadInst>(base)) {
        found_.insert(isInBuffer(load->getPointerOperand()) ? "device" : "");
    } else {
        found_.insert(isa<IntToPtrInst>(base) ? "device" : "");
    }
}

std::optional<Space> SpaceFinder::spaceOf(const Value* pointer) {
    collect(pointer);
    if (found_.size() != 1 || found_.front().empty())
        return std::nullopt;
    return found_.front();
}

bool answer(ShaderModule& shader, CallBase& call, StringRef asked) {
    const auto space = SpaceFinder(shader).spaceOf(call.getArgOperand(0));
    if (!space)
        return false;
    call.replaceAllUsesWith(ConstantInt::get(call.getType(), *space == asked));
    call.eraseFromParent();
    return true;
}

// Calls `unknown` where the space is not known.
template <class Unknown> bool answerEach(ShaderModule& shader, Unknown unknown) {
    bool isChanged = false;
    if (none_of(*shader.module,
                [](const Function& each) { return each.getName().starts_with("msl.in_"); }))
        return false;
    for (Instruction& instruction : make_early_inc_range(instructions(*shader.main))) {
        auto* call = dyn_cast<CallBase>(&instruction);
        StringRef asked = call ? builtInName(*call) : "";
        if (!asked.consume_front("in_"))
            continue;
        if (answer(shader, *call, asked))
            isChanged = true;
        else
            at(*call, unknown);
    }
    return isChanged;
}

} // namespace

bool answerSpaces(ShaderModule& shader) {
    return answerEach(shader, [] {});
}

bool answerAllSpaces(ShaderModule& shader) {
    return answerEach(shader, [] {
        throw TranslationError("Functions differ only in the address space of this pointer, which "
                               "is not known.");
    });
}

} // namespace tarnwick::msl
