#include "TarnwickMSL/Translation/Passes/Widths/ConversionParts.h"

#include "TarnwickMSL/Translation/Passes/Widths/Halves.h"
#include "TarnwickMSL/Translation/Passes/Widths/Packing.h"
#include "TarnwickMSL/Translation/TranslationError.h"

namespace tarnwick::msl {

using namespace llvm;

namespace {

class Conversion {
  public:
    Conversion(CastInst& cast, const PartMap& parts, FoldingBuilder& builder)
        : parts_(parts), builder_(builder), from_(cast.getOperand(0)), type_(cast.getType()),
          target_(parts.standOf(type_)) {}

    Parts resized(Sign sign);
    Parts realFromInteger(Sign sign);
    Parts integerFromReal(Sign sign);
    Parts realFromReal();
    Parts bits();

  private:
    Type* lanesOf(Type* scalar) { return type_->getWithNewType(scalar); }
    Value* word(Sign sign) { return parts_.word(from_, sign, builder_); }
    Value* real() { return parts_.one(from_, builder_); } // a float, also of a half
    WordList laneWords(std::uint64_t lane);
    Value* lane(const WordList& words, std::uint64_t part);

    const PartMap& parts_;
    FoldingBuilder& builder_;
    Value* from_;
    Type* type_;
    Stand target_;
};

} // namespace

static std::uint64_t laneCount(const Type* type) {
    auto* vector = dyn_cast<FixedVectorType>(type);
    return vector ? vector->getNumElements() : 1;
}

Parts Conversion::resized(Sign sign) {
    if (target_ == Stand::word)
        return {word(sign)};
    if (target_ == Stand::pair) {
        const Pair made = Pairs(builder_).extended(word(sign), sign);
        return {made.low, made.high};
    }
    return {builder_.CreateIntCast(word(sign), type_, sign == Sign::signed_)};
}

Parts Conversion::realFromInteger(Sign sign) {
    Type* single = lanesOf(builder_.getFloatTy());
    Value* made = nullptr;
    if (parts_.standOf(from_) == Stand::pair) {
        made = Pairs(builder_).toFloat(parts_.pair(from_, builder_), sign);
    } else {
        Value* integer = parts_.standOf(from_) == Stand::word ? word(sign) : from_;
        made = sign == Sign::signed_ ? builder_.CreateSIToFP(integer, single)
                                     : builder_.CreateUIToFP(integer, single);
    }
    // An integer above 2^24, which a float rounds, is infinity as a half in any case.
    if (target_ == Stand::real)
        return {Halves(builder_).rounded(made)};
    return {builder_.CreateFPCast(made, type_)};
}

Parts Conversion::integerFromReal(Sign sign) {
    Value* value = builder_.CreateFPCast(real(), lanesOf(builder_.getFloatTy()));
    if (target_ == Stand::pair) {
        const Pair made = Pairs(builder_).fromFloat(value, sign);
        return {made.low, made.high};
    }
    Type* integer = target_ == Stand::word ? lanesOf(builder_.getInt32Ty()) : type_;
    return {sign == Sign::signed_ ? builder_.CreateFPToSI(value, integer)
                                  : builder_.CreateFPToUI(value, integer)};
}

Parts Conversion::realFromReal() {
    return {target_ == Stand::real ? Halves(builder_).rounded(real())
                                   : builder_.CreateFPCast(real(), type_)};
}

// The bits of a lane of the operand, other bits zero.
WordList Conversion::laneWords(std::uint64_t lane) {
    const auto at = [&](Value* part) {
        return from_->getType()->isVectorTy() ? builder_.CreateExtractElement(part, lane) : part;
    };
    const Parts parts = parts_.of(from_, builder_);
    const unsigned bits = from_->getType()->getScalarSizeInBits();
    switch (parts_.standOf(from_)) {
    case Stand::word:
        return {builder_.CreateAnd(at(parts[0]), maskTrailingOnes<std::uint64_t>(bits))};
    case Stand::pair:
        return {at(parts[0]), at(parts[1])};
    case Stand::real:
        return {Halves(builder_).toBits(at(parts[0]))};
    case Stand::itself:
        break;
    }
    Value* whole = builder_.CreateBitCast(at(parts[0]), builder_.getIntNTy(bits));
    if (bits <= 32)
        return {builder_.CreateZExt(whole, builder_.getInt32Ty())};
    return {builder_.CreateTrunc(whole, builder_.getInt32Ty()),
            builder_.CreateTrunc(builder_.CreateLShr(whole, 32), builder_.getInt32Ty())};
}

// A part of a lane of the result from its bits.
Value* Conversion::lane(const WordList& words, std::uint64_t part) {
    Type* scalar = type_->getScalarType();
    const unsigned bits = scalar->getScalarSizeInBits();
    if (target_ == Stand::real)
        return Halves(builder_).fromBits(builder_.CreateAnd(words[0], 0xffff));
    if (target_ != Stand::itself)
        return words[part];
    Type* integer = builder_.getIntNTy(bits);
    Value* whole = builder_.CreateZExtOrTrunc(words[0], integer);
    if (bits > 32)
        whole = builder_.CreateOr(whole,
                                  builder_.CreateShl(builder_.CreateZExt(words[1], integer), 32));
    return builder_.CreateBitCast(whole, scalar);
}

Parts Conversion::bits() {
    Type* from = from_->getType();
    SmallVector<WordList, 4> lanes;
    for (std::uint64_t index = 0; index < laneCount(from); ++index)
        lanes.push_back(laneWords(index));
    const WordList words = packed(lanes, from->getScalarSizeInBits() / 8, builder_);
    Parts made;
    for (Type* type : parts_.types(type_))
        made.push_back(PoisonValue::get(type));
    for (std::uint64_t index = 0; index < laneCount(type_); ++index) {
        const WordList given = laneOf(words, index, type_->getScalarSizeInBits() / 8, builder_);
        for (std::size_t part = 0; part < made.size(); ++part) {
            Value* one = lane(given, part);
            made[part] =
                type_->isVectorTy() ? builder_.CreateInsertElement(made[part], one, index) : one;
        }
    }
    return made;
}

std::optional<Parts> loweredConversion(CastInst& cast, const PartMap& parts,
                                       FoldingBuilder& builder) {
    Conversion conversion(cast, parts, builder);
    switch (cast.getOpcode()) {
    case Instruction::Trunc:
    case Instruction::ZExt:
        return conversion.resized(Sign::unsigned_);
    case Instruction::SExt:
        return conversion.resized(Sign::signed_);
    case Instruction::UIToFP:
        return conversion.realFromInteger(Sign::unsigned_);
    case Instruction::SIToFP:
        return conversion.realFromInteger(Sign::signed_);
    case Instruction::FPToUI:
        return conversion.integerFromReal(Sign::unsigned_);
    case Instruction::FPToSI:
        return conversion.integerFromReal(Sign::signed_);
    case Instruction::FPTrunc:
    case Instruction::FPExt:
        return conversion.realFromReal();
    case Instruction::BitCast:
        return conversion.bits();
    case Instruction::IntToPtr:
        throw TranslationError(
            "An address in memory needs 64-bit integers, which the device lacks.");
    default:
        return std::nullopt;
    }
}

} // namespace tarnwick::msl
