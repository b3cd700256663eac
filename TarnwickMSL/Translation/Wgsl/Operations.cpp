#include "TarnwickMSL/Translation/Wgsl/Operations.h"

#include "TarnwickMSL/Translation/Reading/Deferred.h"
#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/IR/Operator.h>
#include <llvm/IR/PatternMatch.h>

#include <array>
#include <optional>

namespace tarnwick::msl::wgsl {

using namespace llvm;
using namespace llvm::PatternMatch;

static bool isBoolean(const Type* type) {
    return type->isIntOrIntVectorTy(1);
}

Expression choice(const Expression& condition, const Expression& yes, const Expression& no) {
    Expression made = call("select", {no, yes, condition});
    made.isSigned = yes.isSigned;
    return made;
}

static Expression writeBoolean(Body& body, const BinaryOperator& operation) {
    const auto operand = [&](unsigned n) { return body.value(operation.getOperand(n)); };
    switch (operation.getOpcode()) {
    case Instruction::And:
    case Instruction::Mul:
        return infix(operand(0), "&", operand(1));
    case Instruction::Or:
        return infix(operand(0), "|", operand(1));
    case Instruction::Xor:
        if (match(operation.getOperand(1), m_AllOnes()))
            return prefix("!", operand(0));
        [[fallthrough]];
    case Instruction::Add:
    case Instruction::Sub:
        return infix(operand(0), "!=", operand(1));
    default: // shifts and divisions of one bit: by zero, or by one
        return operand(0);
    }
}

static std::string_view symbolOf(unsigned opcode) {
    switch (opcode) {
    case Instruction::Add:
    case Instruction::FAdd:
        return "+";
    case Instruction::Sub:
    case Instruction::FSub:
        return "-";
    case Instruction::Mul:
    case Instruction::FMul:
        return "*";
    case Instruction::UDiv:
    case Instruction::SDiv:
    case Instruction::FDiv:
        return "/";
    case Instruction::URem:
    case Instruction::SRem:
    case Instruction::FRem:
        return "%";
    case Instruction::And:
        return "&";
    case Instruction::Or:
        return "|";
    case Instruction::Xor:
        return "^";
    default:
        throw CompilerFault("A binary operation is not known.");
    }
}

// A constant distance of 32 or more is an error in WGSL; LLVM gives it no meaning.
static Expression distance(Body& body, const Value* by) {
    if (auto* constant = dyn_cast<Constant>(by); constant && !body.hidesConstants) {
        const Constant* lane =
            constant->getType()->isVectorTy() ? constant->getSplatValue() : constant;
        auto* number = dyn_cast_or_null<ConstantInt>(lane);
        if (!number || number->getZExtValue() > 31)
            return body.atRunTime(constant);
    }
    return body.unsignedValue(by);
}

static Expression writeShift(Body& body, const BinaryOperator& operation) {
    const Value* value = operation.getOperand(0);
    const unsigned opcode = operation.getOpcode();
    const Expression shifted = opcode == Instruction::AShr   ? body.signedValue(value)
                               : opcode == Instruction::LShr ? body.unsignedValue(value)
                                                             : body.value(value);
    return infix(shifted, opcode == Instruction::Shl ? "<<" : ">>",
                 distance(body, operation.getOperand(1)));
}

// Division by a constant zero is an error in WGSL, at run time it gives the dividend.
static Expression divisor(Body& body, const Value* by, bool isSigned) {
    auto* constant = dyn_cast<Constant>(by);
    const auto isZero = [&](const Constant* lane) {
        auto* number = dyn_cast_or_null<ConstantInt>(lane);
        return !number || number->isZero();
    };
    bool hides = false;
    if (constant && constant->getType()->isVectorTy())
        for (unsigned lane = 0; lane < laneCount(constant->getType()); ++lane)
            hides |= isZero(constant->getAggregateElement(lane));
    else
        hides = constant && isZero(constant);
    if (!hides)
        return isSigned ? body.signedValue(by) : body.unsignedValue(by);
    return body.withSign(body.atRunTime(constant), by->getType(), isSigned ? Sign::yes : Sign::no);
}

// Arithmetic takes a number beside a vector (WGSL, 8.7 "Arithmetic Expressions").
static Expression arithmetic(const Expression& a, std::string_view symbol, const Expression& b) {
    if (!b.repeated.empty())
        return infix(a, symbol, asNumber(b));
    return a.repeated.empty() ? infix(a, symbol, b) : infix(asNumber(a), symbol, b);
}

// The opposite of a constant whose lanes are all negative; null for others. LLVM writes each
// difference to a constant as a sum.
static const Constant* opposite(const Value* value) {
    auto* constant = dyn_cast<Constant>(value);
    const auto of = [](const Constant* lane) -> Constant* {
        if (auto* real = dyn_cast_or_null<ConstantFP>(lane))
            return real->isNegative() && !real->isNaN()
                       ? ConstantFP::get(real->getContext(), neg(real->getValueAPF()))
                       : nullptr;
        auto* number = dyn_cast_or_null<ConstantInt>(lane);
        return number && number->isNegative() && !number->isMinValue(true)
                   ? ConstantInt::get(number->getContext(), -number->getValue())
                   : nullptr;
    };
    if (!constant || !constant->getType()->isVectorTy())
        return constant ? of(constant) : nullptr;
    SmallVector<Constant*, 4> lanes;
    for (unsigned lane = 0; lane < laneCount(constant->getType()); ++lane)
        lanes.push_back(of(constant->getAggregateElement(lane)));
    return is_contained(lanes, nullptr) ? nullptr : ConstantVector::get(lanes);
}

// Both operands with one sign: that of the operand that is no constant.
static Expression writeInteger(Body& body, const BinaryOperator& operation) {
    const Value *a = operation.getOperand(0), *b = operation.getOperand(1);
    std::string_view symbol = symbolOf(operation.getOpcode());
    const bool isBitwise = operation.isBitwiseLogicOp();
    const auto combined = [&](const Expression& first, const Expression& second) {
        return isBitwise ? infix(first, symbol, second) : arithmetic(first, symbol, second);
    };
    if (const Constant* less = opposite(b);
        less && operation.getOpcode() == Instruction::Add && !body.hidesConstants) {
        symbol = "-";
        b = less;
    }
    if (isa<Constant>(a) && !isa<Constant>(b)) {
        const Expression second = body.value(b);
        return combined(second.isSigned ? body.signedValue(a) : body.unsignedValue(a), second);
    }
    const Expression first = body.value(a);
    if (isa<Constant>(b))
        return combined(first, first.isSigned ? body.signedValue(b) : body.unsignedValue(b));
    const Expression second = body.value(b);
    if (first.isSigned == second.isSigned)
        return combined(first, second);
    return combined(body.withSign(first, a->getType(), Sign::no),
                    body.withSign(second, b->getType(), Sign::no));
}

static Expression writeDivision(Body& body, const BinaryOperator& operation) {
    const unsigned opcode = operation.getOpcode();
    const bool isSigned = opcode == Instruction::SDiv || opcode == Instruction::SRem;
    const Value* dividend = operation.getOperand(0);
    const Expression first = isSigned ? body.signedValue(dividend) : body.unsignedValue(dividend);
    return arithmetic(first, symbolOf(opcode), divisor(body, operation.getOperand(1), isSigned));
}

static Expression writeMultiplication(Body& body, const BinaryOperator& product) {
    if (std::optional<Factor> factor = factorOf(product))
        return infix(body.value(factor->vector), "*", body.value(factor->scalar));
    return arithmetic(body.value(product.getOperand(0)), "*", body.value(product.getOperand(1)));
}

static Expression writeReal(Body& body, const BinaryOperator& operation) {
    const Value *a = operation.getOperand(0), *b = operation.getOperand(1);
    const Constant* less = operation.getOpcode() == Instruction::FAdd ? opposite(b) : nullptr;
    if (less && !body.hidesConstants)
        return arithmetic(body.value(a), "-", body.value(less));
    return arithmetic(body.value(a), symbolOf(operation.getOpcode()), body.value(b));
}

Expression writeBinary(Body& body, const BinaryOperator& operation) {
    const unsigned opcode = operation.getOpcode();
    const Value *a = operation.getOperand(0), *b = operation.getOperand(1);
    if (isBoolean(operation.getType()))
        return writeBoolean(body, operation);
    if (opcode == Instruction::FMul)
        return writeMultiplication(body, operation);
    if (const Value* whole = wholeOfFraction(operation))
        return call("fract", {body.value(whole)});
    if (operation.getType()->isFPOrFPVectorTy())
        return writeReal(body, operation);
    if (operation.isShift())
        return writeShift(body, operation);
    if (operation.isIntDivRem())
        return writeDivision(body, operation);
    if (opcode == Instruction::Xor && match(b, m_AllOnes()))
        return prefix("~", body.value(a));
    if (opcode == Instruction::Sub && match(a, m_Zero()))
        return prefix("-", body.signedValue(b));
    return writeInteger(body, operation);
}

namespace {

struct Comparison {
    CmpInst::Predicate predicate;
    std::string_view symbol;
    bool isNegated = false; // the symbol is of the opposite, because of NaN
};

} // namespace

// clang-format off
static constexpr std::array comparisons{
    Comparison{CmpInst::ICMP_EQ,  "=="},
    Comparison{CmpInst::ICMP_NE,  "!="},
    Comparison{CmpInst::ICMP_UGT, ">"},
    Comparison{CmpInst::ICMP_UGE, ">="},
    Comparison{CmpInst::ICMP_ULT, "<"},
    Comparison{CmpInst::ICMP_ULE, "<="},
    Comparison{CmpInst::ICMP_SGT, ">"},
    Comparison{CmpInst::ICMP_SGE, ">="},
    Comparison{CmpInst::ICMP_SLT, "<"},
    Comparison{CmpInst::ICMP_SLE, "<="},
    Comparison{CmpInst::FCMP_OEQ, "=="},
    Comparison{CmpInst::FCMP_UNE, "!="},
    Comparison{CmpInst::FCMP_OGT, ">"},
    Comparison{CmpInst::FCMP_OGE, ">="},
    Comparison{CmpInst::FCMP_OLT, "<"},
    Comparison{CmpInst::FCMP_OLE, "<="},
    Comparison{CmpInst::FCMP_UGT, "<=", true},
    Comparison{CmpInst::FCMP_UGE, "<", true},
    Comparison{CmpInst::FCMP_ULT, ">=", true},
    Comparison{CmpInst::FCMP_ULE, ">", true},
};
// clang-format on

// Of booleans: true is 1 in unsigned comparisons, -1 in signed ones.
static Expression compareBooleans(Body& body, const CmpInst& compare) {
    const CmpInst::Predicate predicate = compare.getPredicate();
    Expression a = body.value(compare.getOperand(0)), b = body.value(compare.getOperand(1));
    if (predicate == CmpInst::ICMP_EQ || predicate == CmpInst::ICMP_NE)
        return infix(a, predicate == CmpInst::ICMP_EQ ? "==" : "!=", b);
    const bool isGreater = predicate == CmpInst::ICMP_UGT || predicate == CmpInst::ICMP_UGE ||
                           predicate == CmpInst::ICMP_SGT || predicate == CmpInst::ICMP_SGE;
    if (isGreater != CmpInst::isSigned(predicate))
        std::swap(a, b); // the result is: not a, and (or) b
    return infix(prefix("!", a), CmpInst::isNonStrictPredicate(predicate) ? "|" : "&", b);
}

Expression isNan(Body& body, Type* type, const Expression& value) {
    const std::string lanes = body.type(type), words = body.type(shapedLike(type, body.i32()));
    const std::string result = body.type(shapedLike(type, body.i1()));
    return call(body.function("isNan", "fn NAME(value: " + lanes + ") -> " + result +
                                           " {\n    return (bitcast<" + words + ">(value) & " +
                                           words + "(0x7fffffffu)) > " + words +
                                           "(0x7f800000u);\n}\n"),
                {value});
}

static Expression unordered(Body& body, const CmpInst& compare) {
    const Value *a = compare.getOperand(0), *b = compare.getOperand(1);
    const Expression first = isNan(body, a->getType(), body.value(a));
    if (a == b || isa<Constant>(b))
        return first;
    return infix(first, "|", isNan(body, b->getType(), body.value(b)));
}

// Less or greater: equal or not, but false (or true) with NaN.
static Expression compareOutside(Body& body, const CmpInst& compare, bool isEqual) {
    const Expression a = body.named(body.value(compare.getOperand(0)), "a");
    const Expression b = body.named(body.value(compare.getOperand(1)), "b");
    const Expression differs = infix(infix(a, "<", b), "|", infix(a, ">", b));
    return isEqual ? prefix("!", differs) : differs;
}

Expression writeCompare(Body& body, const CmpInst& compare) {
    const CmpInst::Predicate predicate = compare.getPredicate();
    if (predicate == CmpInst::FCMP_UNO)
        return unordered(body, compare);
    if (predicate == CmpInst::FCMP_ORD)
        return prefix("!", unordered(body, compare));
    if (predicate == CmpInst::FCMP_TRUE || predicate == CmpInst::FCMP_FALSE)
        return body.constant(
            ConstantInt::getBool(compare.getType(), predicate == CmpInst::FCMP_TRUE));
    if (predicate == CmpInst::FCMP_ONE || predicate == CmpInst::FCMP_UEQ)
        return compareOutside(body, compare, predicate == CmpInst::FCMP_UEQ);
    const Value *a = compare.getOperand(0), *b = compare.getOperand(1);
    if (isBoolean(a->getType()))
        return compareBooleans(body, compare);
    const bool isSigned = CmpInst::isSigned(predicate);
    const bool isAny = !CmpInst::isRelational(predicate) && !isa<Constant>(a);
    for (const Comparison& known : comparisons) {
        if (known.predicate != predicate)
            continue;
        Expression first = isSigned ? body.signedValue(a)
                           : isAny  ? body.value(a)
                                    : body.unsignedValue(a);
        const bool takesSigned = isSigned || (isAny && first.isSigned);
        Expression second = takesSigned ? body.signedValue(b) : body.unsignedValue(b);
        Expression made = infix(first, known.symbol, second);
        made.isSigned = false;
        return known.isNegated ? prefix("!", made) : made;
    }
    throw CompilerFault("A comparison is not known.");
}

static Expression fromBoolean(Body& body, const CastInst& cast) {
    Type* type = cast.getType();
    const Expression value = body.value(cast.getOperand(0));
    const bool isNegative =
        cast.getOpcode() == Instruction::SExt || cast.getOpcode() == Instruction::SIToFP;
    if (!isNegative)
        return call(body.type(type), {value});
    Constant* yes =
        type->isFPOrFPVectorTy() ? ConstantFP::get(type, -1.0) : Constant::getAllOnesValue(type);
    return choice(value, body.constant(yes), body.zero(type));
}

Expression writeCast(Body& body, const CastInst& cast) {
    Type *type = cast.getType(), *from = cast.getSrcTy();
    const Value* given = cast.getOperand(0);
    if (cast.getOpcode() == Instruction::BitCast)
        return body.bitcast(type, from, body.value(given));
    if (isBoolean(from))
        return fromBoolean(body, cast);
    if (isBoolean(type))
        throw CompilerFault("A conversion to a boolean is left.");
    switch (cast.getOpcode()) {
    case Instruction::FPToUI:
        return call(body.type(type), {body.value(given)});
    case Instruction::FPToSI: {
        Expression made = call(body.type(type, Sign::yes), {body.value(given)});
        made.isSigned = true;
        return made;
    }
    case Instruction::UIToFP:
        return call(body.type(type), {body.unsignedValue(given)});
    case Instruction::SIToFP:
        return call(body.type(type), {body.signedValue(given)});
    case Instruction::Trunc: // of indices, which may be wider
    case Instruction::ZExt:
    case Instruction::SExt:
        if (type->getScalarSizeInBits() == from->getScalarSizeInBits())
            return body.value(given);
        [[fallthrough]];
    default:
        throw CompilerFault("A conversion is not known.");
    }
}

Expression saturated(Body& body, Type* to, Type* from, const Expression& value, Sign sign) {
    const bool isSigned = sign == Sign::yes;
    const std::string given = body.type(from), result = body.type(to, sign);
    const std::string above = isSigned ? "2147483648.0f" : "4294967296.0f";
    const std::string most = isSigned ? "2147483647i" : "4294967295u";
    const std::string bits = body.type(shapedLike(to, body.i32()));
    std::string text = "fn NAME(value: " + given + ") -> " + result + " {\n";
    text += "    let inside = select(" + result + "(value), " + result + "(" + most +
            "), value >= " + given + "(" + above + "));\n";
    text += "    let isNan = (bitcast<" + bits + ">(value) & " + bits + "(0x7fffffffu)) > " + bits +
            "(0x7f800000u);\n";
    text += "    return select(inside, " + result + "(), isNan);\n}\n";
    Expression made = call(body.function(isSigned ? "toInt" : "toUint", text), {value});
    made.isSigned = isSigned;
    return made;
}

Expression writeSelect(Body& body, const SelectInst& choice) {
    const Value *yes = choice.getTrueValue(), *no = choice.getFalseValue();
    if (choice.getCondition()->getType() == choice.getType()) {
        if (match(no, m_Zero()))
            return infix(body.value(choice.getCondition()), "&", body.value(yes));
        if (match(yes, m_One()))
            return infix(body.value(choice.getCondition()), "|", body.value(no));
        if (match(no, m_One()))
            return infix(prefix("!", body.value(choice.getCondition())), "|", body.value(yes));
        if (match(yes, m_Zero()))
            return infix(prefix("!", body.value(choice.getCondition())), "&", body.value(no));
    }
    Expression first = body.value(yes), second = body.value(no);
    if (first.isSigned != second.isSigned) {
        const bool takesSigned = isa<Constant>(yes)  ? second.isSigned
                                 : isa<Constant>(no) ? first.isSigned
                                                     : false;
        const Sign sign = takesSigned ? Sign::yes : Sign::no;
        const auto with = [&](const Value* value, const Expression& made) {
            return takesSigned && isa<Constant>(value)
                       ? body.signedValue(value)
                       : body.withSign(made, value->getType(), sign);
        };
        first = with(yes, first);
        second = with(no, second);
    }
    return wgsl::choice(body.value(choice.getCondition()), first, second);
}

} // namespace tarnwick::msl::wgsl
