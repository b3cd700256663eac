// Each value of an odd width has one of the next width up; the bits above the odd width are zero,
// and operations that care for the sign spread it first.
#include "TarnwickMSL/Translation/Passes/Values/OddIntegers.h"

#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/ADT/PostOrderIterator.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/InstIterator.h>

namespace tarnwick::msl {

using namespace llvm;

static bool isOdd(const Type* type) {
    auto* integer = dyn_cast<IntegerType>(type->getScalarType());
    if (!integer)
        return false;
    unsigned bits = integer->getBitWidth();
    return bits != 1 && bits != 8 && bits != 16 && bits != 32 && bits != 64;
}

static Type* promoted(Type* type) {
    unsigned bits = type->getScalarSizeInBits();
    if (bits > 64)
        throw CompilerFault("An integer of more than 64 bits is needed.");
    return type->getWithNewBitWidth(bits <= 8 ? 8 : bits <= 16 ? 16 : bits <= 32 ? 32 : 64);
}

class Promotion {
  public:
    explicit Promotion(Function& main) : main_(main) {}
    void run();

  private:
    Value* wide(Value* value);
    Value* spread(IRBuilder<>& builder, Value* value);
    Value* masked(IRBuilder<>& builder, Value* value, Type* odd);
    Value* promote(Instruction& instruction);
    Value* promoteBinary(BinaryOperator& binary, IRBuilder<>& builder);
    Value* fromLanes(Instruction& cast, IRBuilder<>& builder);
    void use(Instruction& instruction);

    Function& main_;
    DenseMap<Value*, Value*> wide_;
};

Value* Promotion::wide(Value* value) {
    if (Value* known = wide_.lookup(value))
        return known;
    if (auto* number = dyn_cast<ConstantInt>(value))
        return ConstantInt::get(promoted(value->getType()), number->getZExtValue());
    if (isa<UndefValue>(value))
        return Constant::getNullValue(promoted(value->getType()));
    throw CompilerFault("An integer's width is not supported.");
}

Value* Promotion::masked(IRBuilder<>& builder, Value* value, Type* odd) {
    auto mask =
        APInt::getLowBitsSet(value->getType()->getScalarSizeInBits(), odd->getScalarSizeInBits());
    return builder.CreateAnd(value, ConstantInt::get(value->getType(), mask));
}

Value* Promotion::spread(IRBuilder<>& builder, Value* value) {
    Value* promotedValue = wide(value);
    unsigned shift =
        promotedValue->getType()->getScalarSizeInBits() - value->getType()->getScalarSizeInBits();
    return builder.CreateAShr(builder.CreateShl(promotedValue, shift), shift);
}

Value* Promotion::promoteBinary(BinaryOperator& binary, IRBuilder<>& builder) {
    bool isSigned = binary.getOpcode() == Instruction::AShr ||
                    binary.getOpcode() == Instruction::SDiv ||
                    binary.getOpcode() == Instruction::SRem;
    Value* a = isSigned ? spread(builder, binary.getOperand(0)) : wide(binary.getOperand(0));
    bool spreadsBoth = isSigned && binary.getOpcode() != Instruction::AShr;
    Value* b = spreadsBoth ? spread(builder, binary.getOperand(1)) : wide(binary.getOperand(1));
    return masked(builder, builder.CreateBinOp(binary.getOpcode(), a, b), binary.getType());
}

// The bits of a number as a vector of booleans.
static Value* toLanes(Value* bits, FixedVectorType* type, IRBuilder<>& builder) {
    Value* lanes = PoisonValue::get(type);
    for (std::uint64_t lane = 0; lane < type->getNumElements(); ++lane) {
        Value* bit = builder.CreateTrunc(builder.CreateLShr(bits, lane), builder.getInt1Ty());
        lanes = builder.CreateInsertElement(lanes, bit, lane);
    }
    return lanes;
}

// The bits of a vector of booleans as one number.
Value* Promotion::fromLanes(Instruction& cast, IRBuilder<>& builder) {
    auto* vector = dyn_cast<FixedVectorType>(cast.getOperand(0)->getType());
    if (!vector || !vector->getElementType()->isIntegerTy(1))
        throw CompilerFault("A vector is taken for an integer of an unsupported width.");
    Type* type = promoted(cast.getType());
    Value* sum = Constant::getNullValue(type);
    for (std::uint64_t lane = 0; lane < vector->getNumElements(); ++lane) {
        Value* bit =
            builder.CreateZExt(builder.CreateExtractElement(cast.getOperand(0), lane), type);
        sum = builder.CreateOr(sum, builder.CreateShl(bit, lane));
    }
    return sum;
}

Value* Promotion::promote(Instruction& instruction) {
    IRBuilder<> builder(&instruction);
    Type* type = promoted(instruction.getType());
    if (auto* binary = dyn_cast<BinaryOperator>(&instruction))
        return promoteBinary(*binary, builder);
    if (auto* select = dyn_cast<SelectInst>(&instruction))
        return builder.CreateSelect(select->getCondition(), wide(select->getTrueValue()),
                                    wide(select->getFalseValue()));
    if (auto* freeze = dyn_cast<FreezeInst>(&instruction))
        return wide(freeze->getOperand(0));
    if (isa<PHINode>(instruction))
        return builder.CreatePHI(type, 2);
    Value* operand = instruction.getOperand(0);
    bool fromOdd = isOdd(operand->getType());
    switch (instruction.getOpcode()) {
    case Instruction::Trunc:
        return masked(builder, builder.CreateZExtOrTrunc(fromOdd ? wide(operand) : operand, type),
                      instruction.getType());
    case Instruction::ZExt:
        return builder.CreateZExtOrTrunc(fromOdd ? wide(operand) : operand, type);
    case Instruction::SExt:
        return masked(builder,
                      builder.CreateSExtOrTrunc(fromOdd ? spread(builder, operand) : operand, type),
                      instruction.getType());
    case Instruction::BitCast:
        return fromLanes(instruction, builder);
    default:
        throw CompilerFault("An integer's width is not supported.");
    }
}

// An instruction of a plain type that takes an odd one.
void Promotion::use(Instruction& instruction) {
    IRBuilder<> builder(&instruction);
    Value* operand = instruction.getOperand(0);
    Value* result = nullptr;
    if (auto* compare = dyn_cast<ICmpInst>(&instruction)) {
        bool isSigned = compare->isSigned();
        Value* other = compare->getOperand(1);
        result = builder.CreateICmp(compare->getPredicate(),
                                    isSigned ? spread(builder, operand) : wide(operand),
                                    isSigned ? spread(builder, other) : wide(other));
    } else if (isa<ZExtInst, TruncInst>(instruction)) {
        result = instruction.getType()->isIntOrIntVectorTy(1)
                     ? builder.CreateTrunc(wide(operand), instruction.getType())
                     : builder.CreateZExtOrTrunc(wide(operand), instruction.getType());
    } else if (isa<SExtInst>(instruction)) {
        result = builder.CreateSExtOrTrunc(spread(builder, operand), instruction.getType());
    } else if (isa<UIToFPInst>(instruction)) {
        result = builder.CreateUIToFP(wide(operand), instruction.getType());
    } else if (instruction.getType()->isIntOrIntVectorTy(1) && isa<BitCastInst>(instruction)) {
        result = toLanes(wide(operand), cast<FixedVectorType>(instruction.getType()), builder);
    } else if (isa<SIToFPInst>(instruction)) {
        result = builder.CreateSIToFP(spread(builder, operand), instruction.getType());
    } else {
        throw CompilerFault("An integer's width is not supported.");
    }
    instruction.replaceAllUsesWith(result);
}

static bool takesOdd(const Instruction& instruction) {
    return any_of(instruction.operands(), [](const Use& use) { return isOdd(use->getType()); });
}

void Promotion::run() {
    SmallVector<Instruction*, 16> dead;
    ReversePostOrderTraversal<Function*> order(&main_);
    for (BasicBlock* block : order) {
        for (Instruction& instruction : make_early_inc_range(*block)) {
            if (isOdd(instruction.getType()))
                wide_[&instruction] = promote(instruction);
            else if (takesOdd(instruction))
                use(instruction);
            else
                continue;
            dead.push_back(&instruction);
        }
    }
    for (Instruction* old : dead)
        if (auto* phi = dyn_cast<PHINode>(old); phi && isOdd(phi->getType()))
            for (unsigned n = 0; n < phi->getNumIncomingValues(); ++n)
                cast<PHINode>(wide_[phi])
                    ->addIncoming(wide(phi->getIncomingValue(n)), phi->getIncomingBlock(n));
    for (Instruction* old : dead)
        old->replaceAllUsesWith(PoisonValue::get(old->getType()));
    for (Instruction* old : dead)
        old->eraseFromParent();
}

void promoteOddIntegers(Function& main) {
    if (any_of(instructions(main), [](const Instruction& instruction) {
            return isOdd(instruction.getType()) || takesOdd(instruction);
        }))
        Promotion(main).run();
}

} // namespace tarnwick::msl
