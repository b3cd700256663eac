#include "TarnwickMSL/Translation/Passes/Widths/CallParts.h"

#include "TarnwickMSL/Translation/Passes/Calls/BuiltInCalls.h"
#include "TarnwickMSL/Translation/Passes/Widths/Halves.h"
#include "TarnwickMSL/Translation/Passes/Widths/SmallIntegers.h"
#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/IR/IntrinsicInst.h>
#include <llvm/IR/Module.h>

namespace tarnwick::msl {

using namespace llvm;

namespace {

class Call {
  public:
    Call(CallInst& call, const PartMap& parts, ShaderModule& shader, FoldingBuilder& builder)
        : call_(call), parts_(parts), shader_(shader), builder_(builder), type_(call.getType()) {}

    std::optional<Parts> lowered();

  private:
    std::optional<Parts> intrinsic(IntrinsicInst& call);
    std::optional<Parts> pairFunction(Intrinsic::ID id);
    Pair saturated(bool isAddition, Sign sign);
    Pair saturatedFromReal(Sign sign);
    Parts saturatedToSmall(Intrinsic::ID id);
    Parts realFunction(IntrinsicInst& call);
    Parts builtIn(StringRef name);
    Parts shuffledPair(StringRef name);
    Parts withWords(StringRef name);

    Value* argument(unsigned index) { return call_.getArgOperand(index); }
    Value* one(unsigned index) { return parts_.one(argument(index), builder_); }
    Pair pair(unsigned index) { return parts_.pair(argument(index), builder_); }
    static Parts asParts(Pair pair) { return {pair.low, pair.high}; }
    FunctionCallee twin(Type* result, ArrayRef<Type*> arguments);

    CallInst& call_;
    const PartMap& parts_;
    ShaderModule& shader_;
    FoldingBuilder& builder_;
    Type* type_;
};

} // namespace

// Sums and differences overflow as the writer's own do for the other widths.
Pair Call::saturated(bool isAddition, Sign sign) {
    Pairs pairs(builder_);
    const Pair a = pair(0), b = pair(1);
    const Pair result = isAddition ? pairs.add(a, b) : pairs.subtract(a, b);
    Value* zero = Constant::getNullValue(a.low->getType());
    Value* ones = Constant::getAllOnesValue(a.low->getType());
    if (sign == Sign::unsigned_)
        return isAddition ? pairs.choice(pairs.less(result, a, sign), {ones, ones}, result)
                          : pairs.choice(pairs.less(a, b, sign), {zero, zero}, result);
    Value* first = builder_.CreateXor(a.high, result.high);
    Value* second =
        isAddition ? builder_.CreateXor(b.high, result.high) : builder_.CreateXor(a.high, b.high);
    Value* overflows = builder_.CreateICmpSLT(builder_.CreateAnd(first, second), zero);
    Value* most = builder_.CreateLShr(ones, 1);
    const Pair end =
        pairs.choice(pairs.isNegative(a), {zero, builder_.CreateNot(most)}, {ones, most});
    return pairs.choice(overflows, end, result);
}

// Numbers out of the range become its ends, NaN becomes 0.
Pair Call::saturatedFromReal(Sign sign) {
    Pairs pairs(builder_);
    Value* value = one(0);
    Type* real = value->getType();
    const bool isSigned = sign == Sign::signed_;
    const double above = isSigned ? 0x1p63 : 0x1p64, below = isSigned ? -0x1p63 : 0;
    Pair made = pairs.fromFloat(value, sign);
    Value* zero = Constant::getNullValue(made.low->getType());
    Value* ones = Constant::getAllOnesValue(made.low->getType());
    Value* most = isSigned ? builder_.CreateLShr(ones, 1) : ones;
    made = pairs.choice(builder_.CreateFCmpOGE(value, ConstantFP::get(real, above)), {ones, most},
                        made);
    made = pairs.choice(builder_.CreateFCmpOLT(value, ConstantFP::get(real, below)),
                        {zero, isSigned ? builder_.CreateNot(most) : zero}, made);
    return pairs.choice(builder_.CreateFCmpUNO(value, value), {zero, zero}, made);
}

Parts Call::saturatedToSmall(Intrinsic::ID id) {
    const unsigned bits = type_->getScalarSizeInBits();
    Type* words = parts_.types(type_).front();
    Value* value = one(0);
    Value* made = builder_.CreateIntrinsic(id, {words, value->getType()}, {value});
    const auto number = [&](const APInt& end) { return ConstantInt::get(words, end.sext(32)); };
    if (id == Intrinsic::fptoui_sat)
        return {builder_.CreateBinaryIntrinsic(
            Intrinsic::umin, made, ConstantInt::get(words, maskTrailingOnes<std::uint64_t>(bits)))};
    made = builder_.CreateBinaryIntrinsic(Intrinsic::smin, made,
                                          number(APInt::getSignedMaxValue(bits)));
    return {builder_.CreateBinaryIntrinsic(Intrinsic::smax, made,
                                           number(APInt::getSignedMinValue(bits)))};
}

std::optional<Parts> Call::pairFunction(Intrinsic::ID id) {
    Pairs pairs(builder_);
    Value* zero = Constant::getNullValue(pair(0).low->getType());
    const auto chosen = [&](Sign sign, bool isLess) {
        Value* less = pairs.less(pair(0), pair(1), sign);
        return asParts(isLess ? pairs.choice(less, pair(0), pair(1))
                              : pairs.choice(less, pair(1), pair(0)));
    };
    const auto funnel = [&](bool isLeft) { // the far side moves by one first, as it cannot by 64
        Value* near = builder_.CreateAnd(pair(2).low, 63);
        Value* far = builder_.CreateXor(near, ConstantInt::get(near->getType(), 63));
        Value* one = ConstantInt::get(near->getType(), 1);
        const Pair high = isLeft ? pair(0) : pairs.shiftLeft(pair(0), one);
        const Pair low = isLeft ? pairs.shiftRight(pair(1), one, Sign::unsigned_) : pair(1);
        const Pair left = pairs.shiftLeft(high, isLeft ? near : far);
        const Pair right = pairs.shiftRight(low, isLeft ? far : near, Sign::unsigned_);
        return Parts{builder_.CreateOr(left.low, right.low),
                     builder_.CreateOr(left.high, right.high)};
    };
    switch (id) {
    case Intrinsic::abs:
        return asParts(pairs.magnitude(pair(0)));
    case Intrinsic::ctpop:
        return Parts{pairs.population(pair(0)), zero};
    case Intrinsic::ctlz:
        return Parts{pairs.leadingZeros(pair(0)), zero};
    case Intrinsic::cttz:
        return Parts{pairs.trailingZeros(pair(0)), zero};
    case Intrinsic::bitreverse:
        return asParts(pairs.reversed(pair(0)));
    case Intrinsic::bswap:
        return asParts(pairs.swappedBytes(pair(0)));
    case Intrinsic::smin:
        return chosen(Sign::signed_, true);
    case Intrinsic::smax:
        return chosen(Sign::signed_, false);
    case Intrinsic::umin:
        return chosen(Sign::unsigned_, true);
    case Intrinsic::umax:
        return chosen(Sign::unsigned_, false);
    case Intrinsic::fshl:
        return funnel(true);
    case Intrinsic::fshr:
        return funnel(false);
    case Intrinsic::uadd_sat:
        return asParts(saturated(true, Sign::unsigned_));
    case Intrinsic::usub_sat:
        return asParts(saturated(false, Sign::unsigned_));
    case Intrinsic::sadd_sat:
        return asParts(saturated(true, Sign::signed_));
    case Intrinsic::ssub_sat:
        return asParts(saturated(false, Sign::signed_));
    default:
        return std::nullopt;
    }
}

// Whether the result of a function of halves, computed in float, is a half's value.
static bool isExact(Intrinsic::ID id) {
    switch (id) {
    case Intrinsic::fabs:
    case Intrinsic::floor:
    case Intrinsic::ceil:
    case Intrinsic::trunc:
    case Intrinsic::rint:
    case Intrinsic::nearbyint:
    case Intrinsic::round:
    case Intrinsic::roundeven:
    case Intrinsic::minnum:
    case Intrinsic::maxnum:
    case Intrinsic::minimum:
    case Intrinsic::maximum:
    case Intrinsic::copysign:
        return true;
    default:
        return false;
    }
}

// The intrinsic for the types of the parts.
Parts Call::realFunction(IntrinsicInst& call) {
    SmallVector<Type*, 4> overloads;
    Intrinsic::getIntrinsicSignature(call.getCalledFunction(), overloads);
    for (Type*& type : overloads)
        type = parts_.types(type).front();
    SmallVector<Value*, 4> arguments;
    for (unsigned index = 0; index < call.arg_size(); ++index)
        arguments.push_back(parts_.standOf(argument(index)) == Stand::real
                                ? one(index)
                                : parts_.word(argument(index), Sign::signed_, builder_));
    if (call.getIntrinsicID() == Intrinsic::fma && parts_.standOf(type_) == Stand::real)
        return {Halves(builder_).fused(arguments[0], arguments[1], arguments[2])};
    Value* made = builder_.CreateIntrinsic(call.getIntrinsicID(), overloads, arguments);
    const bool isRounded = parts_.standOf(type_) == Stand::real && !isExact(call.getIntrinsicID());
    return {isRounded ? Halves(builder_).rounded(made) : made};
}

std::optional<Parts> Call::intrinsic(IntrinsicInst& call) {
    const Intrinsic::ID id = call.getIntrinsicID();
    if (id == Intrinsic::is_constant)
        return Parts{builder_.getFalse()};
    if (id == Intrinsic::fptosi_sat || id == Intrinsic::fptoui_sat) {
        if (parts_.standOf(type_) == Stand::pair)
            return asParts(
                saturatedFromReal(id == Intrinsic::fptosi_sat ? Sign::signed_ : Sign::unsigned_));
        if (parts_.standOf(type_) == Stand::word)
            return saturatedToSmall(id);
        return Parts{builder_.CreateIntrinsic(id, {type_, one(0)->getType()}, {one(0)})};
    }
    switch (parts_.standOf(argument(0))) {
    case Stand::pair:
        return pairFunction(id);
    case Stand::word: {
        SmallVector<Value*, 3> operands;
        for (unsigned index = 0; index < call.arg_size(); ++index)
            operands.push_back(one(index));
        SmallIntegers integers(builder_, argument(0)->getType()->getScalarSizeInBits());
        Value* made = integers.function(id, operands);
        return made ? std::optional(Parts{made}) : std::nullopt;
    }
    default:
        return realFunction(call);
    }
}

// The built-in function of the same name for other types.
FunctionCallee Call::twin(Type* result, ArrayRef<Type*> arguments) {
    const Function& callee = *call_.getCalledFunction();
    const auto [name, suffix] = callee.getName().rsplit('.');
    FunctionCallee made = shader_.module->getOrInsertFunction(
        (name + ".stand." + suffix).str(), FunctionType::get(result, arguments, false));
    auto* function = cast<Function>(made.getCallee());
    function->copyAttributesFrom(&callee);
    return made;
}

Parts Call::shuffledPair(StringRef name) {
    if (name != "simd_shuffle")
        throw TranslationError("The function " + name.str() +
                               " of 64 bits needs 64-bit integers, which the device lacks.");
    const Pair given = pair(0);
    Value* lane = argument(1);
    FunctionCallee function = twin(given.low->getType(), {given.low->getType(), lane->getType()});
    return {builder_.CreateCall(function, {given.low, lane}),
            builder_.CreateCall(function, {given.high, lane})};
}

Parts Call::withWords(StringRef name) {
    const StringRef suffix = call_.getCalledFunction()->getName().rsplit('.').second;
    const Sign sign = suffix.starts_with("s") ? Sign::signed_ : Sign::unsigned_;
    SmallVector<Value*, 4> arguments;
    SmallVector<Type*, 4> types;
    for (unsigned index = 0; index < call_.arg_size(); ++index) {
        Value* given = argument(index);
        if (parts_.standOf(given) == Stand::word)
            given = parts_.word(given, sign, builder_);
        else if (parts_.standOf(given) == Stand::real)
            given = one(index);
        else if (parts_.standOf(given) == Stand::pair && !(takesSampler(name) && index == 1))
            return shuffledPair(name);
        arguments.push_back(given);
        types.push_back(given->getType());
    }
    Value* made = builder_.CreateCall(twin(parts_.types(type_).front(), types), arguments);
    return {parts_.standOf(type_) == Stand::real ? Halves(builder_).rounded(made) : made};
}

Parts Call::builtIn(StringRef name) {
    if (name == "function_constant") {
        shader_.isShapedByConstants = true;
        Parts zeros;
        for (Type* type : parts_.types(type_))
            zeros.push_back(Constant::getNullValue(type));
        return zeros;
    }
    return parts_.standOf(type_) == Stand::pair ? shuffledPair(name) : withWords(name);
}

std::optional<Parts> Call::lowered() {
    if (auto* call = dyn_cast<IntrinsicInst>(&call_))
        return intrinsic(*call);
    const StringRef name = builtInName(call_);
    return name.empty() ? std::nullopt : std::optional(builtIn(name));
}

std::optional<Parts> loweredCall(CallInst& call, const PartMap& parts, ShaderModule& shader,
                                 FoldingBuilder& builder) {
    return Call(call, parts, shader, builder).lowered();
}

} // namespace tarnwick::msl
