#include "TarnwickMSL/Translation/Passes/Widths/Stands.h"

#include "TarnwickMSL/Translation/Passes/Calls/BuiltInCalls.h"

#include <llvm/IR/Instructions.h>

namespace tarnwick::msl {

using namespace llvm;

Stand Stands::of(const Type* type) const {
    const Type* scalar = type->getScalarType();
    if (scalar->isHalfTy()) // whose bits are an integer of 16 bits
        return lacks_.half || lacks_.int16 ? Stand::real : Stand::itself;
    const bool isNarrow =
        (scalar->isIntegerTy(8) && lacks_.int8) || (scalar->isIntegerTy(16) && lacks_.int16);
    if (isNarrow)
        return Stand::word;
    return scalar->isIntegerTy(64) && lacks_.int64 ? Stand::pair : Stand::itself;
}

bool Stands::areInMemoryOf(const Type* type) const {
    if (auto* record = dyn_cast<StructType>(type))
        return any_of(record->elements(), [this](const Type* of) { return areInMemoryOf(of); });
    if (type->isArrayTy())
        return areInMemoryOf(type->getArrayElementType());
    const unsigned bits = type->getScalarSizeInBits();
    return (bits < 32 && bits > 0 && lacks_.anySmall()) ||
           (type->getScalarType()->isIntegerTy(64) && lacks_.int64);
}

bool isIndexOfSteps(const Use& operand) {
    const User* user = operand.getUser();
    return (isa<GetElementPtrInst>(user) && operand.getOperandNo() > 0) ||
           (isa<ExtractElementInst>(user) && operand.getOperandNo() == 1) ||
           (isa<InsertElementInst>(user) && operand.getOperandNo() == 2);
}

static bool isOfBuiltInCall(const Use& operand) {
    auto* call = dyn_cast<CallInst>(operand.getUser());
    return call && call->isArgOperand(&operand) && !builtInName(*call).empty();
}

bool Stands::concern(const Instruction& instruction) const {
    if (of(instruction.getType()) != Stand::itself)
        return true;
    return any_of(instruction.operands(), [this](const Use& operand) {
        const bool isRead =
            isa<Constant>(operand) && (isIndexOfSteps(operand) || isOfBuiltInCall(operand));
        return of(operand->getType()) != Stand::itself && !isRead;
    });
}

bool isFormatOfLog(const GlobalVariable& global) {
    return any_of(global.users(), [](const User* user) {
        auto* call = dyn_cast<CallInst>(user);
        return call && builtInName(*call) == "log_start";
    });
}

} // namespace tarnwick::msl
