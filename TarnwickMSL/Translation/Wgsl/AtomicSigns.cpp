#include "TarnwickMSL/Translation/Wgsl/AtomicSigns.h"

#include "TarnwickMSL/Translation/Reading/Place.h"

#include <llvm/IR/InstIterator.h>

namespace tarnwick::msl::wgsl {

using namespace llvm;

std::optional<Sign> comparedSign(const Instruction& instruction) {
    if (auto* change = dyn_cast<AtomicRMWInst>(&instruction)) {
        const AtomicRMWInst::BinOp op = change->getOperation();
        if (op == AtomicRMWInst::Min || op == AtomicRMWInst::Max)
            return Sign::yes;
        if (op == AtomicRMWInst::UMin || op == AtomicRMWInst::UMax)
            return Sign::no;
        return std::nullopt;
    }
    auto* call = dyn_cast<CallInst>(&instruction);
    const Function* callee = call ? call->getCalledFunction() : nullptr;
    StringRef name = callee ? callee->getName() : StringRef();
    if (!name.consume_front("msl.atomic_"))
        return std::nullopt;
    const auto [op, suffix] = name.split('.');
    if (!op.contains("min") && !op.contains("max"))
        return std::nullopt;
    const bool isSigned = op.contains("smin") || op.contains("smax") || suffix.starts_with("s") ||
                          suffix.starts_with("i");
    return isSigned ? Sign::yes : Sign::no;
}

static const Value* changedPlace(const Instruction& instruction) {
    auto* change = dyn_cast<AtomicRMWInst>(&instruction);
    return change ? change->getPointerOperand() : cast<CallInst>(instruction).getArgOperand(0);
}

Sign signOfAtomics(const Function& main, const Value& root) {
    bool hasSigned = false, hasUnsigned = false;
    for (const Instruction& instruction : instructions(main)) {
        const std::optional<Sign> sign = comparedSign(instruction);
        if (!sign || placeOf(changedPlace(instruction), main.getDataLayout()).root != &root)
            continue;
        (*sign == Sign::yes ? hasSigned : hasUnsigned) = true;
    }
    return hasSigned && !hasUnsigned ? Sign::yes : Sign::no;
}

} // namespace tarnwick::msl::wgsl
