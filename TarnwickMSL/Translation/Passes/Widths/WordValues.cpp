// Each value of a type that the target lacks has one or two others that stand for it (Stands.h).
//
// The pass visits blocks in reverse postorder, so that the parts of an operand exist before the
// instruction that uses them; only phis can use a later value. Until all values have their parts,
// each phi has a value without known bits as its operands, since the folding builder would
// conclude from a phi without operands what is not so.
//
// What moves values but computes nothing (phis, selections, lanes) is done for each part alone.
// Operations are in SmallIntegers, Pairs and Halves; this file knows the instructions.
#include "TarnwickMSL/Translation/Passes/Widths/WordValues.h"

#include "TarnwickMSL/Translation/Passes/Widths/CallParts.h"
#include "TarnwickMSL/Translation/Passes/Widths/ConversionParts.h"
#include "TarnwickMSL/Translation/Passes/Widths/OperationParts.h"
#include "TarnwickMSL/Translation/Places.h"

#include <llvm/ADT/PostOrderIterator.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/IntrinsicInst.h>

namespace tarnwick::msl {

using namespace llvm;

namespace {

class Lowering {
  public:
    Lowering(ShaderModule& shader, const Stands& stands)
        : shader_(shader), parts_(stands), stands_(stands),
          layout_(shader.module->getDataLayout()) {}
    void run();

  private:
    void replace(Instruction& instruction);
    void keep(Instruction& instruction, const Parts& parts);
    std::optional<Parts> lowered(Instruction& instruction, FoldingBuilder& builder);
    Parts phi(PHINode& phi, FoldingBuilder& builder);
    Parts eachPart(Instruction& instruction, FoldingBuilder& builder);
    bool takesPlainIndices(Instruction& instruction, FoldingBuilder& builder);
    void fillPhis();
    void removeOld();

    ShaderModule& shader_;
    PartMap parts_;
    const Stands& stands_;
    const DataLayout& layout_;
    SmallVector<Instruction*, 32> old_;
    SmallVector<Instruction*, 8> holes_; // stand for the operands of phis
};

} // namespace

Parts Lowering::phi(PHINode& phi, FoldingBuilder& builder) {
    Parts made;
    for (Type* type : parts_.types(phi.getType())) {
        auto* hole = new FreezeInst(PoisonValue::get(type), "",
                                    shader_.main->getEntryBlock().getTerminator()->getIterator());
        holes_.push_back(hole);
        PHINode* part = builder.CreatePHI(type, phi.getNumIncomingValues());
        for (BasicBlock* from : phi.blocks())
            part->addIncoming(hole, from);
        made.push_back(part);
    }
    return made;
}

Parts Lowering::eachPart(Instruction& instruction, FoldingBuilder& builder) {
    const auto operand = [&](unsigned index) {
        return parts_.of(instruction.getOperand(index), builder);
    };
    Parts made;
    const std::size_t count = parts_.types(instruction.getType()).size();
    for (std::size_t part = 0; part < count; ++part) {
        if (auto* select = dyn_cast<SelectInst>(&instruction))
            made.push_back(
                builder.CreateSelect(select->getCondition(), operand(1)[part], operand(2)[part]));
        else if (isa<ExtractElementInst>(instruction))
            made.push_back(
                builder.CreateExtractElement(operand(0)[part], instruction.getOperand(1)));
        else if (isa<InsertElementInst>(instruction))
            made.push_back(builder.CreateInsertElement(operand(0)[part], operand(1)[part],
                                                       instruction.getOperand(2)));
        else
            made.push_back(
                builder.CreateShuffleVector(operand(0)[part], operand(1)[part],
                                            cast<ShuffleVectorInst>(instruction).getShuffleMask()));
    }
    return made;
}

// Gives an instruction words as its indices. Returns whether only they concerned it.
bool Lowering::takesPlainIndices(Instruction& instruction, FoldingBuilder& builder) {
    for (Use& use : instruction.operands())
        if (isIndexOfSteps(use) && !isa<Constant>(use) &&
            stands_.of(use->getType()) != Stand::itself)
            use.set(parts_.signedWord(use.get(), builder));
    return !stands_.concern(instruction);
}

std::optional<Parts> Lowering::lowered(Instruction& instruction, FoldingBuilder& builder) {
    if (isa<SelectInst, ExtractElementInst, InsertElementInst, ShuffleVectorInst>(instruction))
        return eachPart(instruction, builder);
    if (auto* call = dyn_cast<CallInst>(&instruction))
        return loweredCall(*call, parts_, shader_, builder);
    if (auto* conversion = dyn_cast<CastInst>(&instruction))
        return loweredConversion(*conversion, parts_, builder);
    return loweredOperation(instruction, parts_, builder);
}

void Lowering::keep(Instruction& instruction, const Parts& parts) {
    if (stands_.of(instruction.getType()) != Stand::itself)
        parts_.set(instruction, parts);
    else if (!instruction.getType()->isVoidTy())
        instruction.replaceAllUsesWith(parts.front());
    old_.push_back(&instruction);
}

void Lowering::replace(Instruction& instruction) {
    FoldingBuilder builder(instruction.getContext(), InstSimplifyFolder(layout_));
    builder.SetInsertPoint(&instruction);
    if (auto* chosen = dyn_cast<PHINode>(&instruction))
        return keep(instruction, phi(*chosen, builder));
    if (takesPlainIndices(instruction, builder))
        return;
    const std::optional<Parts> parts = lowered(instruction, builder);
    if (!parts)
        throw CompilerFault("An instruction of a type that the target lacks is not known.");
    keep(instruction, *parts);
}

void Lowering::fillPhis() {
    for (Instruction* instruction : old_) {
        auto* phi = dyn_cast<PHINode>(instruction);
        for (unsigned n = 0; phi && n < phi->getNumIncomingValues(); ++n) {
            FoldingBuilder builder(phi->getContext(), InstSimplifyFolder(layout_));
            builder.SetInsertPoint(phi->getIncomingBlock(n)->getTerminator());
            const Parts incoming = parts_.of(phi->getIncomingValue(n), builder);
            const Parts made = parts_.of(phi, builder);
            for (std::size_t part = 0; part < made.size(); ++part)
                cast<PHINode>(made[part])->setIncomingValue(n, incoming[part]);
        }
    }
}

void Lowering::removeOld() {
    for (Instruction* instruction : old_)
        if (!instruction->getType()->isVoidTy())
            instruction->replaceAllUsesWith(PoisonValue::get(instruction->getType()));
    for (Instruction* instruction : old_)
        instruction->eraseFromParent();
    for (Instruction* hole : holes_)
        hole->eraseFromParent();
}

void Lowering::run() {
    ReversePostOrderTraversal<Function*> order(shader_.main);
    for (BasicBlock* block : order)
        for (Instruction& instruction : make_early_inc_range(*block))
            if (stands_.concern(instruction))
                at(instruction, [&] { replace(instruction); });
    fillPhis();
    removeOld();
}

bool useWordValues(ShaderModule& shader) {
    if (!shader.lacks.any())
        return false;
    Lowering(shader, Stands(shader.lacks)).run();
    return true;
}

} // namespace tarnwick::msl
