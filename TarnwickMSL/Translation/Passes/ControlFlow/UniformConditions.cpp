// In: structured code. Out: no branch on a value that is computed from constants, loop counters and
// at least one value of a uniform buffer, and from nothing else. Phis count as computed from their
// incoming values, because the driver turns the branches before them into selects.
#include "TarnwickMSL/Translation/Passes/ControlFlow/UniformConditions.h"

#include <llvm/ADT/DenseMap.h>
#include <llvm/ADT/StringSet.h>
#include <llvm/Analysis/ValueTracking.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/InstrTypes.h>

#include <algorithm>

namespace tarnwick::msl {

using namespace llvm;

namespace {

enum class Source : std::uint8_t { constant, uniform, other }; // the later one wins in a sum

class Sources {
  public:
    explicit Sources(const ShaderModule& shader) {
        for (const InterfaceVariable& variable : shader.interface)
            if (variable.kind == InterfaceKind::uniformBuffer ||
                variable.kind == InterfaceKind::pushConstant)
                uniforms_.insert(variable.global);
    }

    Source of(const Value* value) {
        auto* instruction = dyn_cast<Instruction>(value);
        if (!instruction)
            return isa<Constant>(value) ? Source::constant : Source::other;
        // In a circle of phis the other operands decide.
        auto [place, isNew] = known_.try_emplace(instruction, Source::constant);
        if (!isNew)
            return place->second;
        const Source found = find(*instruction);
        known_[instruction] = found;
        return found;
    }

  private:
    Source find(const Instruction& instruction) {
        if (auto* load = dyn_cast<LoadInst>(&instruction))
            return isUniform(*load) ? Source::uniform : Source::other;
        if (instruction.mayReadOrWriteMemory())
            return Source::other;
        if (auto* call = dyn_cast<CallBase>(&instruction); call && call->getIntrinsicID() == 0)
            return Source::other;
        Source found = Source::constant;
        for (const Use& operand : instruction.operands())
            if (!isa<BasicBlock>(operand) && !isa<Function>(operand) && found != Source::other)
                found = std::max(found, of(operand));
        return found;
    }

    bool isUniform(const LoadInst& load) const {
        const Value* pointer = load.getPointerOperand()->stripInBoundsConstantOffsets();
        return isa<GlobalVariable>(pointer) && uniforms_.contains(pointer->getName());
    }

    StringSet<> uniforms_;
    DenseMap<const Instruction*, Source> known_;
};

} // namespace

static Value* input(IRBuilder<>& builder, ShaderModule& shader, StringRef word, Scalar scalar,
                    Type* type) {
    const std::string name = "msl.in." + word.str();
    GlobalVariable* global = shader.module->getGlobalVariable(name);
    if (!global)
        global = new GlobalVariable(*shader.module, type, true, GlobalValue::ExternalLinkage,
                                    nullptr, name, nullptr, GlobalValue::NotThreadLocal, 0u);
    if (std::ranges::find(shader.interface, name, &InterfaceVariable::global) ==
        shader.interface.end())
        shader.interface.push_back({.kind = InterfaceKind::input,
                                    .global = name,
                                    .builtIn = word.str(),
                                    .scalar = scalar});
    return builder.CreateLoad(type, global);
}

// A condition that is never true, as no driver knows.
static Value* never(ShaderModule& shader) {
    BasicBlock& entry = shader.main->getEntryBlock();
    IRBuilder<> builder(&entry, entry.getFirstNonPHIOrDbgOrAlloca());
    const bool isPixel = shader.stage == Stage::fragment;
    Type* type = isPixel ? FixedVectorType::get(builder.getFloatTy(), 4)
                         : FixedVectorType::get(builder.getInt32Ty(), 3);
    Value* place =
        isPixel ? input(builder, shader, "position", Scalar::float_, type)
                : input(builder, shader, "thread_position_in_threadgroup", Scalar::uint32, type);
    Value* x = builder.CreateExtractElement(place, std::uint64_t{0});
    Value* zero = Constant::getNullValue(x->getType());
    return isPixel ? builder.CreateFCmpOLT(x, zero) : builder.CreateICmpSLT(x, zero);
}

void hideUniformConditions(ShaderModule& shader, const Target& target) {
    if (!target.specialisesUniforms)
        return;
    if (shader.stage != Stage::fragment && shader.stage != Stage::kernel)
        return;
    Sources sources(shader);
    Value* hiding = nullptr;
    for (BasicBlock& block : *shader.main) {
        auto* branch = dyn_cast<BranchInst>(block.getTerminator());
        if (!branch || !branch->isConditional() ||
            sources.of(branch->getCondition()) != Source::uniform)
            continue;
        hiding = hiding ? hiding : never(shader);
        IRBuilder<> builder(branch);
        branch->setCondition(builder.CreateOr(branch->getCondition(), hiding));
    }
}

} // namespace tarnwick::msl
