// Sampling and gathering.

#include "TarnwickMSL/SamplerBits.h"
#include "TarnwickMSL/Translation/Spirv/ImageShapes.h"
#include "TarnwickMSL/Translation/Spirv/Images.h"
#include "TarnwickMSL/Translation/TranslationError.h"

namespace tarnwick::msl::spirv {

using namespace llvm;

using namespace image_operand;

static constexpr std::uint64_t compareBits = 7ull << 18;

static std::uint64_t samplerBits(const CallInst& call) {
    auto* bits = dyn_cast<ConstantInt>(call.getArgOperand(1));
    if (!bits)
        throw TranslationError("The sampler must be known at compile time.");
    return bits->getZExtValue();
}

// In Metal a call compares, in Vulkan a sampler does: a sampler of both uses becomes two.
static std::uint64_t samplerBits(const CallInst& call, bool compares) {
    std::uint64_t bits = samplerBits(call);
    if (compares)
        return bits | samplerComparesBit;
    return bits & samplerArgumentBit ? bits : bits & ~compareBits;
}

Id Images::combined(Image& image, const CallInst& call, bool compares) {
    Id texture = load(image);
    Id variable = sampler(samplerBits(call, compares));
    Id with = body_.emit(spv::Op::OpLoad, samplerType(), {variable});
    Id type = body_.module.type(spv::Op::OpTypeSampledImage, {image.type});
    return body_.emit(spv::Op::OpSampledImage, type, {texture, with});
}

// Pixel coordinates are divided by the first level's size; the layer is not.
Id Images::perPixel(const Image& image, Type* type, Id coordinates) {
    const ImageShape& shape = *image.shape;
    Id pixels = body_.emit(spv::Op::OpConvertUToF, type, {size(image, body_.constants.word(0))});
    if (shape.isArray)
        pixels = body_.emit(spv::Op::OpCompositeInsert, type,
                            {body_.constants.real(body_.f32(), 1), pixels, shape.axes});
    return body_.emit(spv::Op::OpFDiv, type, {coordinates, pixels});
}

static constexpr std::int64_t leastOffset = -8, greatestOffset = 7;

// Whether Vulkan takes the offset as it is (Vulkan 1.3, 43.1, minTexelOffset and maxTexelOffset).
static bool isPlainOffset(const Value* offset) {
    auto* constant = dyn_cast<Constant>(offset);
    if (!constant)
        return false;
    for (unsigned lane = 0; lane < laneCount(constant->getType()); ++lane) {
        Constant* element =
            constant->getType()->isVectorTy() ? constant->getAggregateElement(lane) : nullptr;
        auto* number = dyn_cast<ConstantInt>(element ? element : constant);
        if (number &&
            (number->getSExtValue() < leastOffset || number->getSExtValue() > greatestOffset))
            return false;
    }
    return true;
}

// Vulkan takes only small constant offsets; others are added to the coordinates.
Id Images::coordinates(const Image& image, const CallInst& call, const Value* offset) {
    const Value* given = call.getArgOperand(2);
    Type* type = given->getType();
    Id value = body_.id(given);
    std::uint64_t bits = samplerBits(call);
    bool isPixel = !(bits & samplerArgumentBit) && unpackSampler(bits).coord == SamplerCoord::pixel;
    if (isPixel)
        value = perPixel(image, type, value);
    if (!offset || isPlainOffset(offset))
        return value;
    return body_.emit(spv::Op::OpFAdd, type,
                      {value, perPixel(image, type, shifted(image, type, offset))});
}

// An offset as coordinates in pixels; 0 for the layer.
Id Images::shifted(const Image& image, Type* type, const Value* offset) {
    if (!image.shape->isArray)
        return body_.emit(spv::Op::OpConvertSToF, type, {body_.id(offset)});
    Id moved = body_.emit(spv::Op::OpConvertSToF, shapedLike(offset->getType(), body_.f32()),
                          {body_.id(offset)});
    return body_.emit(spv::Op::OpCompositeConstruct, type,
                      {moved, body_.constants.real(body_.f32(), 0)});
}

Id Images::signedOffset(const Constant& offset) {
    Id scalar = body_.types.signedScalar();
    SmallVector<std::uint32_t, 3> parts;
    for (unsigned lane = 0; lane < laneCount(offset.getType()); ++lane) {
        Constant* element =
            offset.getType()->isVectorTy() ? offset.getAggregateElement(lane) : nullptr;
        auto* number = dyn_cast<ConstantInt>(element ? element : &offset);
        auto value = static_cast<std::uint32_t>(number ? number->getSExtValue() : 0);
        parts.push_back(body_.module.declare(spv::Op::OpConstant, scalar, {value}));
    }
    if (parts.size() == 1)
        return parts.front();
    Id type = body_.module.vector(scalar, static_cast<std::uint32_t>(parts.size()));
    return body_.constants.composite(type, parts);
}

void Images::addOffset(Extras& extras, const Value* offset) {
    if (!offset || !isPlainOffset(offset))
        return;
    auto& constant = *cast<Constant>(offset);
    if (constant.isNullValue() || isa<UndefValue>(constant))
        return;
    extras.mask |= constOffset;
    extras.ids.push_back(signedOffset(constant));
}

static const Value* argumentOrNull(const CallInst& call, unsigned argument) {
    return argument < call.arg_size() ? call.getArgOperand(argument) : nullptr;
}

static spv::Op sampleOp(bool compares, bool isExplicit) {
    if (compares)
        return isExplicit ? spv::Op::OpImageSampleDrefExplicitLod
                          : spv::Op::OpImageSampleDrefImplicitLod;
    return isExplicit ? spv::Op::OpImageSampleExplicitLod : spv::Op::OpImageSampleImplicitLod;
}

Id Images::sample(StringRef name, const CallInst& call) {
    Image& from = image(call.getArgOperand(0));
    name.consume_front("sample");
    bool compares = name.consume_front("_compare"); // the rest says how the level is found
    unsigned next = 3;
    const Value* offset = argumentOrNull(call, next + compares +
                                                   (name.empty()      ? 0
                                                    : name == "_grad" ? 2
                                                                      : 1));
    SmallVector<std::uint32_t, 8> operands{0, coordinates(from, call, offset)};
    operands[0] = combined(from, call, compares);
    if (compares)
        operands.push_back(body_.id(call.getArgOperand(next++)));
    Extras extras;
    auto take = [&](std::uint32_t bit) {
        extras.mask |= bit;
        extras.ids.push_back(body_.id(call.getArgOperand(next++)));
    };
    bool hasLevels = shader_.stage == Stage::fragment; // where neighbours give a level
    if (name == "_bias")
        take(hasLevels ? bias : lod);
    else if (name == "_level")
        take(lod);
    else if (name == "_grad") {
        take(grad);
        take(grad);
    } else if (!hasLevels) {
        extras.mask = lod;
        extras.ids.push_back(body_.constants.real(body_.f32(), 0));
    }
    bool isExplicit = extras.mask & (lod | grad);
    addOffset(extras, offset);
    if (extras.mask) {
        operands.push_back(extras.mask);
        operands.append(extras.ids);
    }
    Id type = compares ? body_.types.of(call.getType()) : resultType(from, call);
    Id value = body_.emit(sampleOp(compares, isExplicit), type, operands);
    return compares ? value : result(from, call, value);
}

Id Images::gather(StringRef name, const CallInst& call) {
    Image& from = image(call.getArgOperand(0));
    bool compares = name == "gather_compare";
    // The component is last. A comparison has none; its reference is before the offset.
    unsigned last = call.arg_size() - 1;
    const Value* offset = compares   ? argumentOrNull(call, 4)
                          : last > 3 ? call.getArgOperand(3)
                                     : nullptr;
    SmallVector<std::uint32_t, 6> operands{0, coordinates(from, call, offset)};
    operands[0] = combined(from, call, compares);
    if (!compares && !isa<Constant>(call.getArgOperand(last)))
        throw TranslationError("The component to gather must be known at compile time.");
    operands.push_back(body_.id(call.getArgOperand(compares ? 3 : last)));
    Extras extras;
    addOffset(extras, offset);
    if (extras.mask) {
        operands.push_back(extras.mask);
        operands.append(extras.ids);
    }
    Id value = body_.emit(compares ? spv::Op::OpImageDrefGather : spv::Op::OpImageGather,
                          resultType(from, call), operands);
    return result(from, call, value);
}

// The level that is accessed and the level that was computed; both are 0 without neighbours.
Id Images::levelOfDetail(const CallInst& call) {
    if (shader_.stage != Stage::fragment)
        return body_.constants.null(call.getType());
    body_.module.require(spv::Capability::ImageQuery);
    Image& of = image(call.getArgOperand(0));
    Id at = coordinates(of, call, nullptr);
    return body_.emit(spv::Op::OpImageQueryLod, call.getType(), {combined(of, call, false), at});
}

} // namespace tarnwick::msl::spirv
