#include "TarnwickMSL/Translation/Passes/Optimising/UnrollHints.h"

#include <llvm/Analysis/LoopInfo.h>
#include <llvm/Analysis/ScalarEvolution.h>
#include <llvm/IR/Constants.h>
#include <llvm/IR/Instructions.h>
#include <llvm/Transforms/Utils/LoopUtils.h>

namespace tarnwick::msl {

using namespace llvm;

constexpr std::uint64_t largestHinted = 6'000; // instructions, rounds times body, before they fold

// A larger limit of the number of rounds is that of the counter's type.
constexpr unsigned manyRounds = 1'000'000;

static constexpr StringLiteral ofLLVM = "llvm.loop.unroll.";

static StringRef nameOf(const Metadata* operand) {
    auto* node = dyn_cast_or_null<MDNode>(operand);
    auto* name =
        node && node->getNumOperands() > 0 ? dyn_cast<MDString>(node->getOperand(0)) : nullptr;
    return name ? name->getString() : StringRef();
}

static MDNode* distinct(LLVMContext& context, SmallVectorImpl<Metadata*>& operands) {
    MDNode* node = MDNode::getDistinct(context, operands);
    node->replaceOperandWith(0, node);
    return node;
}

void keepUnrollHints(Instruction& latch) {
    MDNode* given = latch.getMetadata(LLVMContext::MD_loop);
    if (!given)
        return;
    LLVMContext& context = latch.getContext();
    SmallVector<Metadata*, 4> kept{nullptr};
    for (const MDOperand& operand : drop_begin(given->operands()))
        if (StringRef name = nameOf(operand); name.starts_with(ofLLVM)) {
            StringRef mark = name == "llvm.loop.unroll.disable" ? keepMark : unrollMark;
            kept.push_back(operand);
            kept.push_back(MDNode::get(context, MDString::get(context, mark)));
        }
    latch.setMetadata(LLVMContext::MD_loop, kept.size() > 1 ? distinct(context, kept) : nullptr);
}

static void dropHints(Loop& loop) {
    SmallVector<Metadata*, 4> kept{nullptr};
    for (const MDOperand& operand : drop_begin(loop.getLoopID()->operands()))
        if (!nameOf(operand).starts_with(ofLLVM))
            kept.push_back(operand);
    loop.setLoopID(distinct(loop.getHeader()->getContext(), kept));
}

bool limitUnrollHints(LoopInfo& loops, ScalarEvolution& evolution) {
    bool isAnyLeft = false;
    for (Loop* loop : loops.getLoopsInPreorder()) {
        const bool isWhole = getBooleanLoopAttribute(loop, "llvm.loop.unroll.enable") ||
                             getBooleanLoopAttribute(loop, "llvm.loop.unroll.full");
        const auto count = getOptionalIntLoopAttribute(loop, "llvm.loop.unroll.count");
        if (!isWhole && !count)
            continue;
        std::uint64_t size = 0;
        for (BasicBlock* block : loop->blocks())
            size += block->size();
        std::uint64_t copies = count ? static_cast<std::uint64_t>(*count)
                                     : evolution.getSmallConstantMaxTripCount(loop);
        if (copies == 0 || copies * size > largestHinted)
            dropHints(*loop);
        else
            isAnyLeft = true;
    }
    return isAnyLeft;
}

LoopControl loopControl(const Loop& loop, ScalarEvolution& evolution) {
    if (getBooleanLoopAttribute(&loop, keepMark))
        return LoopControl::keep;
    const bool isUnrolled = getBooleanLoopAttribute(&loop, "llvm.loop.unroll.disable");
    const unsigned most = evolution.getSmallConstantMaxTripCount(&loop);
    const bool isUnknown = most == 0 || most > manyRounds;
    if (getBooleanLoopAttribute(&loop, unrollMark) && !isUnrolled && isUnknown)
        return LoopControl::unroll;
    return LoopControl::none;
}

void setLoopControl(const Loop& loop, LoopControl control) {
    PHINode* best = nullptr;
    for (PHINode& phi : loop.getHeader()->phis())
        if (!phi.getType()->isVectorTy() && (!best || phi.getType()->isIntegerTy()))
            best = &phi;
    if (best && control != LoopControl::none)
        best->setMetadata(control == LoopControl::unroll ? unrollMark : keepMark,
                          MDNode::get(best->getContext(), {}));
}

} // namespace tarnwick::msl
