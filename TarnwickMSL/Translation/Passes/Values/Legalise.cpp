// In: LLVM's IR after its own passes, which choose whatever instruction is shortest on a processor:
// tests of a float's class by mask, reductions of vectors, sums and products with an overflow bit,
// three-way comparisons, truncations to booleans, and hints. Out: the same values by instructions
// that SPIR-V has, without the hints.
//
// Invariant: each expansion gives the value of LLVM's language reference bit for bit, for every
// operand for which that defines one. An expansion works per lane, so a vector stays a vector.
//
// Why here: after the last of LLVM's simplifying passes, which would make the intrinsic again from
// the expansion; and in one place, so that the writer can treat an unknown intrinsic as a fault.
#include "TarnwickMSL/Translation/Passes/Values/Legalise.h"

#include "TarnwickMSL/Translation/Places.h"

#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/IntrinsicInst.h>
#include <llvm/Transforms/Utils/BasicBlockUtils.h>

namespace tarnwick::msl {

using namespace llvm;

// Bits of a float's class in llvm.is.fpclass, tested on its bits.
static Value* expandClass(IRBuilder<>& builder, IntrinsicInst& call) {
    Value* value = call.getArgOperand(0);
    auto mask = static_cast<FPClassTest>(cast<ConstantInt>(call.getArgOperand(1))->getZExtValue());
    Type* scalar = value->getType()->getScalarType();
    unsigned bits = scalar->getScalarSizeInBits();
    const fltSemantics& form = scalar->getFltSemantics();
    Type* type = value->getType()->getWithNewType(builder.getIntNTy(bits));
    auto number = [&](const APInt& constant) { return ConstantInt::get(type, constant); };
    APInt infinity = APFloat::getInf(form).bitcastToAPInt();
    APInt smallestNormal = APFloat::getSmallestNormalized(form).bitcastToAPInt();
    Value* word = builder.CreateBitCast(value, type);
    Value* size = builder.CreateAnd(word, number(APInt::getSignedMaxValue(bits)));
    Value* isNegative = builder.CreateICmpSLT(word, Constant::getNullValue(type));
    Value* quiet = number(infinity.lshr(1) | infinity); // the highest bit of the fraction
    Value* result = Constant::getNullValue(call.getType());
    auto take = [&](FPClassTest both, FPClassTest negative, Value* is) {
        if (!(mask & both))
            return;
        if ((mask & both) != both)
            is = builder.CreateAnd(is,
                                   (mask & negative) ? isNegative : builder.CreateNot(isNegative));
        result = builder.CreateOr(result, is);
    };
    Value* isNaN = builder.CreateICmpUGT(size, number(infinity));
    if ((mask & fcNan) == fcNan)
        result = builder.CreateOr(result, isNaN);
    else if (mask & fcQNan)
        result = builder.CreateOr(result, builder.CreateICmpUGE(size, quiet));
    else if (mask & fcSNan)
        result =
            builder.CreateOr(result, builder.CreateAnd(isNaN, builder.CreateICmpULT(size, quiet)));
    take(fcInf, fcNegInf, builder.CreateICmpEQ(size, number(infinity)));
    take(fcZero, fcNegZero, builder.CreateICmpEQ(size, Constant::getNullValue(type)));
    Value* isFinite = builder.CreateICmpULT(size, number(infinity));
    take(fcNormal, fcNegNormal,
         builder.CreateAnd(isFinite, builder.CreateICmpUGE(size, number(smallestNormal))));
    take(fcSubnormal, fcNegSubnormal,
         builder.CreateAnd(builder.CreateICmpULT(size, number(smallestNormal)),
                           builder.CreateIsNotNull(size)));
    return result;
}

static Value* expandReduction(IRBuilder<>& builder, IntrinsicInst& call) {
    Value* vector = call.getArgOperand(0);
    unsigned lanes = cast<FixedVectorType>(vector->getType())->getNumElements();
    Value* result = builder.CreateExtractElement(vector, std::uint64_t{0});
    for (std::uint64_t lane = 1; lane < lanes; ++lane) {
        Value* next = builder.CreateExtractElement(vector, lane);
        switch (call.getIntrinsicID()) {
        case Intrinsic::vector_reduce_add:
            result = builder.CreateAdd(result, next);
            break;
        case Intrinsic::vector_reduce_mul:
            result = builder.CreateMul(result, next);
            break;
        case Intrinsic::vector_reduce_and:
            result = builder.CreateAnd(result, next);
            break;
        case Intrinsic::vector_reduce_or:
            result = builder.CreateOr(result, next);
            break;
        case Intrinsic::vector_reduce_xor:
            result = builder.CreateXor(result, next);
            break;
        case Intrinsic::vector_reduce_smax:
            result = builder.CreateBinaryIntrinsic(Intrinsic::smax, result, next);
            break;
        case Intrinsic::vector_reduce_smin:
            result = builder.CreateBinaryIntrinsic(Intrinsic::smin, result, next);
            break;
        case Intrinsic::vector_reduce_umax:
            result = builder.CreateBinaryIntrinsic(Intrinsic::umax, result, next);
            break;
        case Intrinsic::vector_reduce_umin:
            result = builder.CreateBinaryIntrinsic(Intrinsic::umin, result, next);
            break;
        case Intrinsic::vector_reduce_fmax:
            result = builder.CreateBinaryIntrinsic(Intrinsic::maxnum, result, next);
            break;
        case Intrinsic::vector_reduce_fmin:
            result = builder.CreateBinaryIntrinsic(Intrinsic::minnum, result, next);
            break;
        default:
            return nullptr;
        }
    }
    return result;
}

static Value* expandThreeWay(IRBuilder<>& builder, IntrinsicInst& call, bool isSigned) {
    Value *a = call.getArgOperand(0), *b = call.getArgOperand(1);
    Value* less = isSigned ? builder.CreateICmpSLT(a, b) : builder.CreateICmpULT(a, b);
    Value* more = isSigned ? builder.CreateICmpSGT(a, b) : builder.CreateICmpUGT(a, b);
    return builder.CreateSub(builder.CreateZExt(more, call.getType()),
                             builder.CreateZExt(less, call.getType()));
}

// The two members of the result of the intrinsic: the value and the overflow.
static std::pair<Value*, Value*> expandOverflow(IRBuilder<>& builder, IntrinsicInst& call) {
    Value *a = call.getArgOperand(0), *b = call.getArgOperand(1);
    auto* zero = Constant::getNullValue(a->getType());
    switch (call.getIntrinsicID()) {
    case Intrinsic::uadd_with_overflow: {
        Value* sum = builder.CreateAdd(a, b);
        return {sum, builder.CreateICmpULT(sum, a)};
    }
    case Intrinsic::usub_with_overflow:
        return {builder.CreateSub(a, b), builder.CreateICmpULT(a, b)};
    case Intrinsic::sadd_with_overflow: {
        Value* sum = builder.CreateAdd(a, b);
        Value* signs = builder.CreateAnd(builder.CreateXor(sum, a), builder.CreateXor(sum, b));
        return {sum, builder.CreateICmpSLT(signs, zero)};
    }
    case Intrinsic::ssub_with_overflow: {
        Value* difference = builder.CreateSub(a, b);
        Value* signs = builder.CreateAnd(builder.CreateXor(a, b), builder.CreateXor(difference, a));
        return {difference, builder.CreateICmpSLT(signs, zero)};
    }
    case Intrinsic::umul_with_overflow:
    case Intrinsic::smul_with_overflow: {
        unsigned bits = a->getType()->getScalarSizeInBits();
        if (bits > 32 && call.getIntrinsicID() == Intrinsic::umul_with_overflow) {
            Value* product = builder.CreateMul(a, b);
            Value* one = ConstantInt::get(a->getType(), 1);
            Value* divisor = builder.CreateBinaryIntrinsic(Intrinsic::umax, a, one);
            Value* expected = builder.CreateSelect(builder.CreateICmpEQ(a, zero), zero, b);
            return {product, builder.CreateICmpNE(builder.CreateUDiv(product, divisor), expected)};
        }
        if (bits > 32)
            throw CompilerFault("A signed product of 64 bits is asked for its overflow.");
        Type* wide = a->getType()->getWithNewBitWidth(bits * 2);
        bool isSigned = call.getIntrinsicID() == Intrinsic::smul_with_overflow;
        Value* product = builder.CreateMul(builder.CreateIntCast(a, wide, isSigned),
                                           builder.CreateIntCast(b, wide, isSigned));
        Value* low = builder.CreateTrunc(product, a->getType());
        return {low, builder.CreateICmpNE(builder.CreateIntCast(low, wide, isSigned), product)};
    }
    default:
        return {};
    }
}

static bool replaceOverflow(IntrinsicInst& call) {
    IRBuilder<> builder(&call);
    auto [result, overflow] = expandOverflow(builder, call);
    if (!result)
        return false;
    for (User* user : make_early_inc_range(call.users())) {
        auto* member = dyn_cast<ExtractValueInst>(user);
        if (!member)
            throw CompilerFault("A record is kept whole in a register.");
        member->replaceAllUsesWith(member->getIndices().front() == 0 ? result : overflow);
        member->eraseFromParent();
    }
    call.eraseFromParent();
    return true;
}

static Value* expansion(IRBuilder<>& builder, IntrinsicInst& call) {
    switch (call.getIntrinsicID()) {
    case Intrinsic::is_fpclass:
        return expandClass(builder, call);
    case Intrinsic::scmp:
    case Intrinsic::ucmp:
        return expandThreeWay(builder, call, call.getIntrinsicID() == Intrinsic::scmp);
    case Intrinsic::abs: // of a bool
    case Intrinsic::expect:
    case Intrinsic::ssa_copy:
    case Intrinsic::arithmetic_fence:
    case Intrinsic::canonicalize:
        return call.getArgOperand(0);
    default:
        return expandReduction(builder, call);
    }
}

static bool isHint(const IntrinsicInst& call) {
    switch (call.getIntrinsicID()) {
    case Intrinsic::assume:
    case Intrinsic::donothing:
    case Intrinsic::lifetime_start:
    case Intrinsic::lifetime_end:
    case Intrinsic::experimental_noalias_scope_decl:
    case Intrinsic::invariant_start:
    case Intrinsic::invariant_end:
    case Intrinsic::sideeffect:
    case Intrinsic::trap:
    case Intrinsic::ubsantrap:
    case Intrinsic::debugtrap:
    case Intrinsic::stacksave:
    case Intrinsic::stackrestore:
        return call.use_empty();
    default:
        return call.isDebugOrPseudoInst();
    }
}

static void legaliseIntrinsic(IntrinsicInst& call) {
    if (isHint(call)) {
        call.eraseFromParent();
        return;
    }
    if (isa<WithOverflowInst>(call) && replaceOverflow(call))
        return;
    IRBuilder<> builder(&call);
    bool isReduction = call.getCalledFunction()->getName().starts_with("llvm.vector.reduce.");
    bool isOther = isReduction;
    switch (call.getIntrinsicID()) {
    case Intrinsic::is_fpclass:
    case Intrinsic::scmp:
    case Intrinsic::ucmp:
    case Intrinsic::expect:
    case Intrinsic::ssa_copy:
    case Intrinsic::arithmetic_fence:
    case Intrinsic::canonicalize:
        isOther = true;
        break;
    case Intrinsic::abs:
        isOther = call.getType()->isIntOrIntVectorTy(1);
        break;
    default:
        break;
    }
    if (!isOther)
        return;
    Value* result = expansion(builder, call);
    if (!result)
        throw CompilerFault("A vector's lanes are combined in a way that is not supported.");
    call.replaceAllUsesWith(result);
    call.eraseFromParent();
}

// A truncation to a boolean keeps the lowest bit.
static void legaliseTruncation(TruncInst& truncation) {
    if (!truncation.getType()->isIntOrIntVectorTy(1))
        return;
    IRBuilder<> builder(&truncation);
    Value* value = truncation.getOperand(0);
    Value* bit = builder.CreateAnd(value, ConstantInt::get(value->getType(), 1));
    truncation.replaceAllUsesWith(builder.CreateIsNotNull(bit));
    truncation.eraseFromParent();
}

void legalise(Function& main) {
    SmallVector<Instruction*, 16> candidates; // an expansion removes others than itself
    for (Instruction& instruction : instructions(main))
        if (isa<IntrinsicInst, TruncInst, FreezeInst>(instruction))
            candidates.push_back(&instruction);
    for (Instruction* instruction : candidates) {
        if (auto* call = dyn_cast<IntrinsicInst>(instruction)) {
            at(*call, [call] { legaliseIntrinsic(*call); });
        } else if (auto* truncation = dyn_cast<TruncInst>(instruction)) {
            legaliseTruncation(*truncation);
        } else {
            instruction->replaceAllUsesWith(instruction->getOperand(0));
            instruction->eraseFromParent();
        }
    }
}

} // namespace tarnwick::msl
