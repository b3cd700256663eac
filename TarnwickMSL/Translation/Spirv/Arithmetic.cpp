#include "TarnwickMSL/Translation/Spirv/Arithmetic.h"

#include "TarnwickMSL/Translation/Reading/Deferred.h"
#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/IR/Operator.h>
#include <llvm/IR/PatternMatch.h>

#include <array>

namespace tarnwick::msl::spirv {

using namespace llvm;
using namespace llvm::PatternMatch;

bool isBoolean(Type* type) {
    return type->isIntOrIntVectorTy(1);
}

Id writeFloat(Body& body, const Instruction& source, spv::Op op, Type* type, Operands operands) {
    Id id = body.emit(op, type, operands);
    if (auto* operation = dyn_cast<FPMathOperator>(&source);
        operation && !operation->hasAllowContract())
        body.module.decorate(id, spv::Decoration::NoContraction);
    return id;
}

static Id writeBoolean(Body& body, const BinaryOperator& operation, Id a, Id b) {
    Type* type = operation.getType();
    switch (operation.getOpcode()) {
    case Instruction::And:
    case Instruction::Mul:
        return body.emit(spv::Op::OpLogicalAnd, type, {a, b});
    case Instruction::Or:
        return body.emit(spv::Op::OpLogicalOr, type, {a, b});
    case Instruction::Xor:
        if (match(operation.getOperand(1), m_AllOnes()))
            return body.negated(type, a);
        [[fallthrough]];
    case Instruction::Add:
    case Instruction::Sub:
        return body.emit(spv::Op::OpLogicalNotEqual, type, {a, b});
    default: // shifts and divisions of one bit: by zero, or by one
        return a;
    }
}

// The least integer divided by -1 does not fit its type; a processor may trap.
static Id safeDivisor(Body& body, const BinaryOperator& operation, Id a, Id b) {
    if (isa<Constant>(operation.getOperand(1)) && !match(operation.getOperand(1), m_AllOnes()))
        return b;
    Type* type = operation.getType();
    Type* boolean = shapedLike(type, body.i1());
    APInt least = APInt::getSignedMinValue(type->getScalarSizeInBits());
    Id isLeast = body.emit(spv::Op::OpIEqual, boolean,
                           {a, body.constants.of(ConstantInt::get(type, least))});
    Id isMinusOne = body.emit(spv::Op::OpIEqual, boolean,
                              {b, body.constants.of(Constant::getAllOnesValue(type))});
    Id overflows = body.emit(spv::Op::OpLogicalAnd, boolean, {isLeast, isMinusOne});
    return body.select(type, overflows, body.constants.integer(type, 1), b);
}

static Id writeSignedDivision(Body& body, const BinaryOperator& operation, Id a, Id b) {
    Type* type = operation.getType();
    Id divisor = safeDivisor(body, operation, a, b);
    Id quotient = body.emit(spv::Op::OpSDiv, type, {a, divisor});
    if (operation.getOpcode() == Instruction::SDiv)
        return quotient;
    // OpSRem is defined only for operands that are not negative (Vulkan 1.3, Appendix A).
    Id product = body.emit(spv::Op::OpIMul, type, {quotient, divisor});
    return body.emit(spv::Op::OpISub, type, {a, product});
}

static Id writeMultiplication(Body& body, const BinaryOperator& product) {
    Type* type = product.getType();
    if (std::optional<Factor> factor = factorOf(product))
        return writeFloat(body, product, spv::Op::OpVectorTimesScalar, type,
                          {body.id(factor->vector), body.id(factor->scalar)});
    return writeFloat(body, product, spv::Op::OpFMul, type,
                      {body.id(product.getOperand(0)), body.id(product.getOperand(1))});
}

static spv::Op plainOp(unsigned opcode) {
    switch (opcode) {
    case Instruction::Add:
        return spv::Op::OpIAdd;
    case Instruction::Sub:
        return spv::Op::OpISub;
    case Instruction::Mul:
        return spv::Op::OpIMul;
    case Instruction::UDiv:
        return spv::Op::OpUDiv;
    case Instruction::URem:
        return spv::Op::OpUMod;
    case Instruction::Shl:
        return spv::Op::OpShiftLeftLogical;
    case Instruction::LShr:
        return spv::Op::OpShiftRightLogical;
    case Instruction::AShr:
        return spv::Op::OpShiftRightArithmetic;
    case Instruction::And:
        return spv::Op::OpBitwiseAnd;
    case Instruction::Or:
        return spv::Op::OpBitwiseOr;
    case Instruction::Xor:
        return spv::Op::OpBitwiseXor;
    case Instruction::FAdd:
        return spv::Op::OpFAdd;
    case Instruction::FSub:
        return spv::Op::OpFSub;
    case Instruction::FDiv:
        return spv::Op::OpFDiv;
    case Instruction::FRem:
        return spv::Op::OpFRem;
    default:
        throw CompilerFault("A binary operation is not known.");
    }
}

Id writeBinary(Body& body, const BinaryOperator& operation) {
    Type* type = operation.getType();
    unsigned opcode = operation.getOpcode();
    if (opcode == Instruction::FMul)
        return writeMultiplication(body, operation);
    if (const Value* whole = wholeOfFraction(operation))
        return body.extended(GLSLstd450Fract, type, {body.id(whole)});
    Id a = body.id(operation.getOperand(0));
    Id b = body.id(operation.getOperand(1));
    if (isBoolean(type))
        return writeBoolean(body, operation, a, b);
    if (opcode == Instruction::SDiv || opcode == Instruction::SRem)
        return writeSignedDivision(body, operation, a, b);
    if (opcode == Instruction::Xor && match(operation.getOperand(1), m_AllOnes()))
        return body.emit(spv::Op::OpNot, type, {a});
    if (opcode == Instruction::Sub && match(operation.getOperand(0), m_Zero()))
        return body.emit(spv::Op::OpSNegate, type, {b});
    return writeFloat(body, operation, plainOp(opcode), type, {a, b});
}

struct Comparison {
    CmpInst::Predicate predicate;
    spv::Op op;
};

// clang-format off
static constexpr std::array comparisons{
    Comparison{CmpInst::ICMP_EQ,  spv::Op::OpIEqual},
    Comparison{CmpInst::ICMP_NE,  spv::Op::OpINotEqual},
    Comparison{CmpInst::ICMP_UGT, spv::Op::OpUGreaterThan},
    Comparison{CmpInst::ICMP_UGE, spv::Op::OpUGreaterThanEqual},
    Comparison{CmpInst::ICMP_ULT, spv::Op::OpULessThan},
    Comparison{CmpInst::ICMP_ULE, spv::Op::OpULessThanEqual},
    Comparison{CmpInst::ICMP_SGT, spv::Op::OpSGreaterThan},
    Comparison{CmpInst::ICMP_SGE, spv::Op::OpSGreaterThanEqual},
    Comparison{CmpInst::ICMP_SLT, spv::Op::OpSLessThan},
    Comparison{CmpInst::ICMP_SLE, spv::Op::OpSLessThanEqual},
    Comparison{CmpInst::FCMP_OEQ, spv::Op::OpFOrdEqual},
    Comparison{CmpInst::FCMP_ONE, spv::Op::OpFOrdNotEqual},
    Comparison{CmpInst::FCMP_OGT, spv::Op::OpFOrdGreaterThan},
    Comparison{CmpInst::FCMP_OGE, spv::Op::OpFOrdGreaterThanEqual},
    Comparison{CmpInst::FCMP_OLT, spv::Op::OpFOrdLessThan},
    Comparison{CmpInst::FCMP_OLE, spv::Op::OpFOrdLessThanEqual},
    Comparison{CmpInst::FCMP_UEQ, spv::Op::OpFUnordEqual},
    Comparison{CmpInst::FCMP_UNE, spv::Op::OpFUnordNotEqual},
    Comparison{CmpInst::FCMP_UGT, spv::Op::OpFUnordGreaterThan},
    Comparison{CmpInst::FCMP_UGE, spv::Op::OpFUnordGreaterThanEqual},
    Comparison{CmpInst::FCMP_ULT, spv::Op::OpFUnordLessThan},
    Comparison{CmpInst::FCMP_ULE, spv::Op::OpFUnordLessThanEqual},
};
// clang-format on

// Of i1: true is 1 in unsigned comparisons, -1 in signed ones.
static Id compareBooleans(Body& body, const CmpInst& compare, Id a, Id b) {
    Type* type = compare.getType();
    CmpInst::Predicate predicate = compare.getPredicate();
    if (predicate == CmpInst::ICMP_EQ)
        return body.emit(spv::Op::OpLogicalEqual, type, {a, b});
    if (predicate == CmpInst::ICMP_NE)
        return body.emit(spv::Op::OpLogicalNotEqual, type, {a, b});
    bool isSigned = CmpInst::isSigned(predicate);
    bool isGreater = predicate == CmpInst::ICMP_UGT || predicate == CmpInst::ICMP_UGE ||
                     predicate == CmpInst::ICMP_SGT || predicate == CmpInst::ICMP_SGE;
    if (isGreater != isSigned)
        std::swap(a, b); // the result is: not a, and (or) b
    bool orEqual = CmpInst::isNonStrictPredicate(predicate);
    return body.emit(orEqual ? spv::Op::OpLogicalOr : spv::Op::OpLogicalAnd, type,
                     {body.negated(type, a), b});
}

// Whether either operand is NaN.
static Id unordered(Body& body, const CmpInst& compare) {
    Type* type = compare.getType();
    const Value* a = compare.getOperand(0);
    const Value* b = compare.getOperand(1);
    Id isNan = body.emit(spv::Op::OpIsNan, type, {body.id(a)});
    if (a == b || isa<Constant>(b))
        return isNan;
    Id other = body.emit(spv::Op::OpIsNan, type, {body.id(b)});
    return body.emit(spv::Op::OpLogicalOr, type, {isNan, other});
}

Id writeCompare(Body& body, const CmpInst& compare) {
    Type* type = compare.getType();
    CmpInst::Predicate predicate = compare.getPredicate();
    if (predicate == CmpInst::FCMP_UNO)
        return unordered(body, compare);
    if (predicate == CmpInst::FCMP_ORD)
        return body.negated(type, unordered(body, compare));
    if (predicate == CmpInst::FCMP_TRUE || predicate == CmpInst::FCMP_FALSE)
        return body.constants.of(ConstantInt::getBool(type, predicate == CmpInst::FCMP_TRUE));
    Id a = body.id(compare.getOperand(0));
    Id b = body.id(compare.getOperand(1));
    if (isBoolean(compare.getOperand(0)->getType()))
        return compareBooleans(body, compare, a, b);
    for (const Comparison& known : comparisons)
        if (known.predicate == predicate)
            return body.emit(known.op, type, {a, b});
    throw CompilerFault("A comparison is not known.");
}

static Id fromBoolean(Body& body, const CastInst& cast, Id value) {
    Type* type = cast.getType();
    bool isNegative =
        cast.getOpcode() == Instruction::SExt || cast.getOpcode() == Instruction::SIToFP;
    Id yes = 0;
    if (type->isFPOrFPVectorTy())
        yes = body.constants.real(type, isNegative ? -1.0 : 1.0);
    else
        yes = body.constants.of(isNegative ? Constant::getAllOnesValue(type)
                                           : ConstantInt::get(type, 1));
    return body.select(type, value, yes, body.constants.null(type));
}

Id writeCast(Body& body, const CastInst& cast) {
    Type* type = cast.getType();
    Type* from = cast.getSrcTy();
    Id value = body.id(cast.getOperand(0));
    if (cast.getOpcode() == Instruction::BitCast)
        return body.bitcast(type, from, value);
    if (isBoolean(from))
        return fromBoolean(body, cast, value);
    if (isBoolean(type))
        throw CompilerFault("A conversion to a boolean is left.");
    switch (cast.getOpcode()) {
    case Instruction::Trunc:
    case Instruction::ZExt:
        return body.resized(type, from, value, false);
    case Instruction::SExt:
        return body.resized(type, from, value, true);
    case Instruction::FPTrunc:
    case Instruction::FPExt:
        return body.emit(spv::Op::OpFConvert, type, {value});
    case Instruction::FPToUI:
        return body.emit(spv::Op::OpConvertFToU, type, {value});
    case Instruction::FPToSI:
        return body.emit(spv::Op::OpConvertFToS, type, {value});
    case Instruction::UIToFP:
        return body.emit(spv::Op::OpConvertUToF, type, {value});
    case Instruction::SIToFP:
        // SPIRV-Tools' optimiser, which drivers run, takes a constant of an unsigned type for an
        // unsigned number here.
        if (from->getScalarSizeInBits() == 32)
            value =
                body.emit(spv::Op::OpBitcast, body.types.signedNumbers(laneCount(from)), {value});
        return body.emit(spv::Op::OpConvertSToF, type, {value});
    default:
        throw CompilerFault("A conversion is not known.");
    }
}

} // namespace tarnwick::msl::spirv
