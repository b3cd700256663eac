// Each value of an odd width has one of the next width up; the bits above the odd width are zero,
// and operations that care for the sign spread it first.
#include "TarnwickMSL/Translation/Passes/Values/OddIntegers.h"

#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/ADT/PostOrderIterator.h>
#include <llvm/IR/ConstantFold.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/IntrinsicInst.h>

#include <algorithm>

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
    Value* promoteIntrinsic(IntrinsicInst& call, IRBuilder<>& builder);
    Value* plain(IRBuilder<>& builder, Value* value, bool isSigned);
    Value* fromLanes(Instruction& cast, IRBuilder<>& builder);
    Value* load(LoadInst& load, IRBuilder<>& builder);
    void store(StoreInst& store, IRBuilder<>& builder);
    void use(Instruction& instruction);

    Function& main_;
    DenseMap<Value*, Value*> wide_;
};

Value* Promotion::wide(Value* value) {
    if (Value* known = wide_.lookup(value))
        return known;
    auto* constant = dyn_cast<Constant>(value);
    Type* type = promoted(value->getType());
    if (Constant* folded =
            constant ? ConstantFoldCastInstruction(Instruction::ZExt, constant, type) : nullptr)
        return folded;
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

// A value of a plain or an odd width, in a plain one.
Value* Promotion::plain(IRBuilder<>& builder, Value* value, bool isSigned) {
    if (!isOdd(value->getType()))
        return value;
    return isSigned ? spread(builder, value) : wide(value);
}

// Functions on bits count from the other end, which the bits above the odd width move.
Value* Promotion::promoteIntrinsic(IntrinsicInst& call, IRBuilder<>& builder) {
    const Intrinsic::ID id = call.getIntrinsicID();
    Type* odd = call.getType();
    Type* type = isOdd(odd) ? promoted(odd) : odd;
    const unsigned bits = odd->getScalarSizeInBits();
    const unsigned added = type->getScalarSizeInBits() - bits;
    switch (id) {
    case Intrinsic::bitreverse:
    case Intrinsic::bswap:
        return builder.CreateLShr(builder.CreateUnaryIntrinsic(id, wide(call.getArgOperand(0))),
                                  added);
    case Intrinsic::ctpop:
        return builder.CreateUnaryIntrinsic(id, wide(call.getArgOperand(0)));
    case Intrinsic::cttz: {
        Value* end = ConstantInt::get(type, APInt::getOneBitSet(bits + added, bits));
        return builder.CreateIntrinsic(
            type, id, {builder.CreateOr(wide(call.getArgOperand(0)), end), builder.getFalse()});
    }
    case Intrinsic::ctlz:
        return builder.CreateSub(
            builder.CreateIntrinsic(type, id, {wide(call.getArgOperand(0)), builder.getFalse()}),
            ConstantInt::get(type, added));
    case Intrinsic::abs:
        return masked(builder,
                      builder.CreateIntrinsic(
                          type, id, {spread(builder, call.getArgOperand(0)), builder.getFalse()}),
                      odd);
    case Intrinsic::smin:
    case Intrinsic::smax:
    case Intrinsic::umin:
    case Intrinsic::umax:
    case Intrinsic::usub_sat:
    case Intrinsic::scmp:
    case Intrinsic::ucmp: {
        const bool isSigned =
            id == Intrinsic::smin || id == Intrinsic::smax || id == Intrinsic::scmp;
        Value* a = plain(builder, call.getArgOperand(0), isSigned);
        Value* b = plain(builder, call.getArgOperand(1), isSigned);
        const bool isComparison = id == Intrinsic::scmp || id == Intrinsic::ucmp;
        Value* result = isComparison ? builder.CreateIntrinsic(id, {type, a->getType()}, {a, b})
                                     : builder.CreateBinaryIntrinsic(id, a, b);
        return type == odd ? result : masked(builder, result, odd);
    }
    case Intrinsic::fshl:
    case Intrinsic::fshr: {
        Value* width = ConstantInt::get(type, bits);
        Value* by = builder.CreateURem(wide(call.getArgOperand(2)), width);
        Value* rest = builder.CreateSub(width, by);
        const bool isLeft = id == Intrinsic::fshl;
        Value* high = builder.CreateShl(wide(call.getArgOperand(0)), isLeft ? by : rest);
        Value* low = builder.CreateLShr(wide(call.getArgOperand(1)), isLeft ? rest : by);
        return masked(builder, builder.CreateOr(high, low), odd);
    }
    default:
        throw CompilerFault("An integer's width is not supported.");
    }
}

// The bits of a number as a vector of smaller ones or of booleans.
static Value* toLanes(Value* bits, FixedVectorType* type, IRBuilder<>& builder) {
    Value* lanes = PoisonValue::get(type);
    for (std::uint64_t lane = 0; lane < type->getNumElements(); ++lane) {
        Value* value = builder.CreateTrunc(
            builder.CreateLShr(bits, lane * type->getScalarSizeInBits()), type->getElementType());
        lanes = builder.CreateInsertElement(lanes, value, lane);
    }
    return lanes;
}

// The bits of a vector of smaller numbers or of booleans as one number.
Value* Promotion::fromLanes(Instruction& cast, IRBuilder<>& builder) {
    auto* vector = dyn_cast<FixedVectorType>(cast.getOperand(0)->getType());
    if (!vector || !vector->getElementType()->isIntegerTy() || isOdd(vector))
        throw CompilerFault("A vector is taken for an integer of an unsupported width.");
    Type* type = promoted(cast.getType());
    Value* sum = Constant::getNullValue(type);
    for (std::uint64_t lane = 0; lane < vector->getNumElements(); ++lane) {
        Value* value =
            builder.CreateZExt(builder.CreateExtractElement(cast.getOperand(0), lane), type);
        sum = builder.CreateOr(sum, builder.CreateShl(value, lane * vector->getScalarSizeInBits()));
    }
    return sum;
}

// Calls `part(bits, offset)` for the plain widths that make an odd one in memory, from the lowest
// byte on: a copy of three bytes is one of two and one of one.
template <class Part> static void eachPart(const Type* odd, Part part) {
    const unsigned bits = odd->getScalarSizeInBits();
    if (odd->isVectorTy() || bits % 8 != 0)
        throw CompilerFault("An integer's width is not supported.");
    for (unsigned offset = 0; offset < bits;) {
        const unsigned size = std::min(bit_floor(bits - offset), 32u);
        part(size, offset);
        offset += size;
    }
}

Value* Promotion::load(LoadInst& load, IRBuilder<>& builder) {
    Type* type = promoted(load.getType());
    Value* sum = Constant::getNullValue(type);
    eachPart(load.getType(), [&](unsigned bits, unsigned offset) {
        Value* at = builder.CreateConstInBoundsGEP1_32(builder.getInt8Ty(),
                                                       load.getPointerOperand(), offset / 8);
        Value* value = builder.CreateAlignedLoad(builder.getIntNTy(bits), at,
                                                 commonAlignment(load.getAlign(), offset / 8),
                                                 load.isVolatile());
        sum = builder.CreateOr(sum, builder.CreateShl(builder.CreateZExt(value, type), offset));
    });
    return sum;
}

void Promotion::store(StoreInst& store, IRBuilder<>& builder) {
    Value* value = wide(store.getValueOperand());
    eachPart(store.getValueOperand()->getType(), [&](unsigned bits, unsigned offset) {
        Value* at = builder.CreateConstInBoundsGEP1_32(builder.getInt8Ty(),
                                                       store.getPointerOperand(), offset / 8);
        builder.CreateAlignedStore(
            builder.CreateTrunc(builder.CreateLShr(value, offset), builder.getIntNTy(bits)), at,
            commonAlignment(store.getAlign(), offset / 8), store.isVolatile());
    });
}

Value* Promotion::promote(Instruction& instruction) {
    IRBuilder<> builder(&instruction);
    Type* type = promoted(instruction.getType());
    if (auto* read = dyn_cast<LoadInst>(&instruction))
        return load(*read, builder);
    if (auto* binary = dyn_cast<BinaryOperator>(&instruction))
        return promoteBinary(*binary, builder);
    if (auto* call = dyn_cast<IntrinsicInst>(&instruction))
        return promoteIntrinsic(*call, builder);
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
    if (auto* write = dyn_cast<StoreInst>(&instruction))
        return store(*write, builder);
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
    } else if (isa<BitCastInst>(instruction) && instruction.getType()->isVectorTy() &&
               instruction.getType()->isIntOrIntVectorTy()) {
        result = toLanes(wide(operand), cast<FixedVectorType>(instruction.getType()), builder);
    } else if (isa<SIToFPInst>(instruction)) {
        result = builder.CreateSIToFP(spread(builder, operand), instruction.getType());
    } else if (auto* call = dyn_cast<IntrinsicInst>(&instruction)) {
        result = promoteIntrinsic(*call, builder);
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

// Functions on bits that give back a single bit.
static void removeFunctionsOfOneBit(Function& main) {
    for (Instruction& instruction : make_early_inc_range(instructions(main)))
        if (auto* call = dyn_cast<IntrinsicInst>(&instruction);
            call && call->getType()->isIntOrIntVectorTy(1) &&
            is_contained({Intrinsic::bitreverse, Intrinsic::ctpop}, call->getIntrinsicID())) {
            call->replaceAllUsesWith(call->getArgOperand(0));
            call->eraseFromParent();
        }
}

void promoteOddIntegers(Function& main) {
    removeFunctionsOfOneBit(main);
    if (any_of(instructions(main), [](const Instruction& instruction) {
            return isOdd(instruction.getType()) || takesOdd(instruction);
        }))
        Promotion(main).run();
}

} // namespace tarnwick::msl
