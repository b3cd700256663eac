#include "TarnwickMSL/Translation/Spirv/Images.h"

#include "TarnwickMSL/SamplerBits.h"
#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/ADT/StringSwitch.h>

#include <array>
#include <optional>

namespace tarnwick::msl::spirv {

using namespace llvm;

struct Shape {
    TextureShape shape;
    spv::Dim dimension;
    bool isArray = false, isMultisample = false;
    unsigned axes = 0; // of a size, layers aside
    std::optional<spv::Capability> sampled = std::nullopt, storage = std::nullopt;
};

// clang-format off
static constexpr std::array shapes{
    Shape{TextureShape::buffer,             spv::Dim::Buffer, false, false, 1, spv::Capability::SampledBuffer, spv::Capability::ImageBuffer},
    Shape{TextureShape::d1,                 spv::Dim::Dim1D,  false, false, 1, spv::Capability::Sampled1D, spv::Capability::Image1D},
    Shape{TextureShape::d1Array,            spv::Dim::Dim1D,  true,  false, 1, spv::Capability::Sampled1D, spv::Capability::Image1D},
    Shape{TextureShape::d2,                 spv::Dim::Dim2D,  false, false, 2},
    Shape{TextureShape::d2Array,            spv::Dim::Dim2D,  true,  false, 2},
    Shape{TextureShape::d2Multisample,      spv::Dim::Dim2D,  false, true,  2, std::nullopt, spv::Capability::StorageImageMultisample},
    Shape{TextureShape::d2MultisampleArray, spv::Dim::Dim2D,  true,  true,  2, spv::Capability::ImageMSArray, spv::Capability::ImageMSArray},
    Shape{TextureShape::d3,                 spv::Dim::Dim3D,  false, false, 3},
    Shape{TextureShape::cube,               spv::Dim::Cube,   false, false, 2},
    Shape{TextureShape::cubeArray,          spv::Dim::Cube,   true,  false, 2, spv::Capability::SampledCubeArray, spv::Capability::ImageCubeArray},
};
// clang-format on

static const Shape& shapeOf(const TextureVariable& texture) {
    for (const Shape& shape : shapes)
        if (shape.shape == texture.shape)
            return shape;
    throw TranslationError("A texture has a shape that is not known.");
}

bool Images::takes(StringRef name) {
    return StringSwitch<bool>(name)
        .Cases("sample", "sample_bias", "sample_level", "sample_grad", "gather", true)
        .Cases("sample_compare", "sample_compare_level", "gather_compare", "read", "write", true)
        .Cases("width", "height", "depth", "levels", "samples", "layers", true)
        .Default(false);
}

static constexpr std::uint32_t bias = 0x1, lod = 0x2, grad = 0x4, constOffset = 0x8,
                               sampleOf = 0x40;

Id Images::imageType(const TextureVariable& texture, bool isStorage) {
    const Shape& shape = shapeOf(texture);
    Module& module = body_.module;
    if (auto capability = isStorage ? shape.storage : shape.sampled)
        module.require(*capability);
    Id component = body_.types.of(body_.f32());
    if (texture.component == TextureComponent::uint_)
        component = body_.types.of(body_.i32());
    else if (texture.component == TextureComponent::int_)
        component = body_.types.signedScalar();
    return module.declareType(spv::Op::OpTypeImage,
                              {component, static_cast<std::uint32_t>(shape.dimension),
                               texture.isDepth, shape.isArray, shape.isMultisample,
                               isStorage ? 2u : 1u,
                               static_cast<std::uint32_t>(spv::ImageFormat::Unknown)});
}

static void bind(Module& module, Id variable, std::uint32_t binding) {
    module.decorate(variable, spv::Decoration::DescriptorSet, {0});
    module.decorate(variable, spv::Decoration::Binding, {binding});
}

void Images::declare(Image& made) {
    const TextureVariable& texture = *made.texture;
    made.isStorage = texture.isWritten;
    made.type = imageType(texture, made.isStorage);
    auto storage = spv::StorageClass::UniformConstant;
    made.variable = body_.module.variable(body_.types.pointer(storage, made.type), storage);
    bind(body_.module, made.variable, texture.binding);
    if (made.isStorage && !texture.isRead)
        body_.module.decorate(made.variable, spv::Decoration::NonReadable);
    resources_.push_back(
        {.kind = made.isStorage ? ResourceKind::storageTexture : ResourceKind::sampledTexture,
         .index = texture.index,
         .binding = texture.binding,
         .isWritten = texture.isWritten,
         .shape = texture.shape,
         .component = texture.component});
}

Images::Image& Images::image(const Value* handle) {
    auto* constant = dyn_cast<ConstantInt>(handle);
    if (!constant)
        throw TranslationError("Which texture is used must be known when the program is compiled.");
    auto index = static_cast<std::uint32_t>(constant->getZExtValue());
    Image& known = images_[index];
    if (known.texture)
        return known;
    for (const TextureVariable& texture : shader_.textures)
        if (texture.index == index)
            known.texture = &texture;
    if (!known.texture)
        throw TranslationError("A texture is used that is no argument of the function.");
    declare(known);
    return known;
}

Id Images::sampler(std::uint64_t bits) {
    Id& known = samplers_[bits];
    if (known)
        return known;
    if (!samplerType_)
        samplerType_ = body_.module.declareType(spv::Op::OpTypeSampler, {});
    auto storage = spv::StorageClass::UniformConstant;
    known = body_.module.variable(body_.types.pointer(storage, samplerType_), storage);
    bind(body_.module, known, nextBinding_);
    bool isArgument = bits & samplerArgumentBit;
    Resource resource{.kind = isArgument ? ResourceKind::sampler : ResourceKind::constantSampler};
    resource.binding = nextBinding_++;
    if (isArgument)
        resource.index = static_cast<std::uint32_t>(bits & 0xffff);
    else
        resource.samplerState = bits;
    resources_.push_back(resource);
    return known;
}

static std::uint64_t samplerBits(const CallInst& call) {
    auto* bits = dyn_cast<ConstantInt>(call.getArgOperand(1));
    if (!bits)
        throw TranslationError("Which sampler is used must be known when the program is compiled.");
    return bits->getZExtValue();
}

Id Images::combined(Image& image, const CallInst& call) {
    Id texture = load(image);
    Id variable = sampler(samplerBits(call));
    Id with = body_.emit(spv::Op::OpLoad, samplerType_, {variable});
    if (!image.sampledType)
        image.sampledType = body_.module.declareType(spv::Op::OpTypeSampledImage, {image.type});
    return body_.emit(spv::Op::OpSampledImage, image.sampledType, {texture, with});
}

// Sizes are integers of as many components as the image has axes, and its layers last.
Id Images::size(const Image& image, Id level) {
    body_.module.require(spv::Capability::ImageQuery);
    const Shape& shape = shapeOf(*image.texture);
    unsigned count = shape.axes + shape.isArray;
    Type* type = count == 1 ? body_.i32() : FixedVectorType::get(body_.i32(), count);
    bool hasLevels =
        !image.isStorage && !shape.isMultisample && shape.dimension != spv::Dim::Buffer;
    if (!hasLevels)
        return body_.emit(spv::Op::OpImageQuerySize, type, {load(image)});
    Id all = body_.emit(spv::Op::OpImageQuerySizeLod, type, {load(image), body_.constants.word(0)});
    return level == body_.constants.word(0) ? all : halved(type, all, level, shape.isArray);
}

// A level's size from the first one's: a packaged CPU driver answers all invocations of a group
// with the size of the level that the first of them asks for.
Id Images::halved(Type* type, Id size, Id level, bool hasLayers) {
    Id levels = body_.splat(type, level);
    if (hasLayers)
        levels = body_.emit(spv::Op::OpCompositeInsert, type,
                            {body_.constants.word(0), levels, laneCount(type) - 1});
    Id smaller = body_.emit(spv::Op::OpShiftRightLogical, type, {size, levels});
    return body_.extended(GLSLstd450UMax, type, {smaller, body_.constants.integer(type, 1)});
}

// Pixel coordinates run to the first level's size; the layer stays what it is.
Id Images::perPixel(const Image& image, Type* type, Id coordinates) {
    const Shape& shape = shapeOf(*image.texture);
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

// Vulkan takes small constant offsets alone; others move the coordinates.
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
    if (shapeOf(*image.texture).isArray)
        throw TranslationError("A sampling offset into an array of textures must be constant.");
    Id moved = body_.emit(spv::Op::OpConvertSToF, type, {body_.id(offset)});
    return body_.emit(spv::Op::OpFAdd, type, {value, perPixel(image, type, moved)});
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
    Id type = body_.module.declareType(spv::Op::OpTypeVector,
                                       {scalar, static_cast<std::uint32_t>(parts.size())});
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

Id Images::resultType(const Image& image, const CallInst& call) {
    return image.texture->component == TextureComponent::int_ ? body_.types.signedVector()
                                                              : body_.types.of(call.getType());
}

Id Images::result(const Image& image, const CallInst& call, Id value) {
    bool isSigned = image.texture->component == TextureComponent::int_;
    return isSigned ? body_.emit(spv::Op::OpBitcast, call.getType(), {value}) : value;
}

// Which argument of a sampling call is the offset, if it has one.
static unsigned offsetOf(StringRef name) {
    return StringSwitch<unsigned>(name)
        .Cases("sample_bias", "sample_level", "sample_compare", 4)
        .Cases("sample_grad", "sample_compare_level", 5)
        .Default(3);
}

static spv::Op sampleOp(bool compares, bool isExplicit) {
    if (compares)
        return isExplicit ? spv::Op::OpImageSampleDrefExplicitLod
                          : spv::Op::OpImageSampleDrefImplicitLod;
    return isExplicit ? spv::Op::OpImageSampleExplicitLod : spv::Op::OpImageSampleImplicitLod;
}

Id Images::sample(StringRef name, const CallInst& call) {
    Image& from = image(call.getArgOperand(0));
    bool compares = name.starts_with("sample_compare");
    unsigned next = 3;
    const Value* offset = argumentOrNull(call, offsetOf(name));
    SmallVector<std::uint32_t, 8> operands{0, coordinates(from, call, offset)};
    operands[0] = combined(from, call);
    if (compares)
        operands.push_back(body_.id(call.getArgOperand(next++)));
    Extras extras;
    auto take = [&](std::uint32_t bit) {
        extras.mask |= bit;
        extras.ids.push_back(body_.id(call.getArgOperand(next++)));
    };
    bool hasLevels = shader_.stage == Stage::fragment; // where neighbours give a level
    if (name == "sample_bias")
        take(hasLevels ? bias : lod);
    else if (name == "sample_level" || name == "sample_compare_level")
        take(lod);
    else if (name == "sample_grad") {
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
    // Either the component stands last, or the reference before the offset.
    unsigned last = call.arg_size() - 1;
    const Value* offset = compares   ? argumentOrNull(call, 4)
                          : last > 3 ? call.getArgOperand(3)
                                     : nullptr;
    SmallVector<std::uint32_t, 6> operands{0, coordinates(from, call, offset)};
    operands[0] = combined(from, call);
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

Id Images::query(StringRef name, const CallInst& call) {
    const Image& of = image(call.getArgOperand(0));
    const Shape& shape = shapeOf(*of.texture);
    body_.module.require(spv::Capability::ImageQuery);
    if (name == "levels") {
        if (of.isStorage || shape.isMultisample)
            return body_.constants.word(1);
        return body_.emit(spv::Op::OpImageQueryLevels, body_.i32(), {load(of)});
    }
    if (name == "samples")
        return body_.emit(spv::Op::OpImageQuerySamples, body_.i32(), {load(of)});
    Id level = call.arg_size() > 1 ? body_.id(call.getArgOperand(1)) : body_.constants.word(0);
    Id all = size(of, level);
    if (shape.axes + shape.isArray == 1)
        return all;
    std::uint32_t axis = StringSwitch<std::uint32_t>(name)
                             .Case("width", 0)
                             .Case("height", 1)
                             .Case("depth", 2)
                             .Default(shape.axes);
    return body_.emit(spv::Op::OpCompositeExtract, body_.i32(), {all, axis});
}

// A read outside gives zero; the fetch itself stays inside.
Id Images::read(const CallInst& call) {
    const Image& from = image(call.getArgOperand(0));
    const Shape& shape = shapeOf(*from.texture);
    if (shape.dimension == spv::Dim::Cube && !from.isStorage)
        throw TranslationError("Reading single pixels of a cube texture is not supported.");
    Type* type = call.getArgOperand(1)->getType();
    Id at = body_.id(call.getArgOperand(1));
    const Value* third = call.arg_size() > 2 ? call.getArgOperand(2) : nullptr;
    Id level = third && !shape.isMultisample ? body_.id(third) : body_.constants.word(0);
    Id inside = 0;
    if (third && !isa<Constant>(third) && !shape.isMultisample && !from.isStorage) {
        Id levels = body_.emit(spv::Op::OpImageQueryLevels, body_.i32(), {load(from)});
        inside = body_.emit(spv::Op::OpULessThan, body_.i1(), {level, levels});
        level = body_.select(body_.i32(), inside, level, body_.constants.word(0));
    }
    Type* boolean = shapedLike(type, body_.i1());
    Id within = body_.emit(spv::Op::OpULessThan, boolean, {at, size(from, level)});
    if (type->isVectorTy())
        within = body_.emit(spv::Op::OpAll, body_.i1(), {within});
    inside = inside ? body_.emit(spv::Op::OpLogicalAnd, body_.i1(), {inside, within}) : within;
    at = body_.select(type, inside, at, body_.constants.null(type));
    SmallVector<std::uint32_t, 4> operands{load(from), at};
    if (shape.isMultisample)
        operands.append({sampleOf, third ? body_.id(third) : body_.constants.word(0)});
    else if (!from.isStorage && shape.dimension != spv::Dim::Buffer)
        operands.append({lod, level});
    if (from.isStorage)
        body_.module.require(spv::Capability::StorageImageReadWithoutFormat);
    Id texel = body_.emit(from.isStorage ? spv::Op::OpImageRead : spv::Op::OpImageFetch,
                          resultType(from, call), operands);
    texel = result(from, call, texel);
    return body_.select(call.getType(), inside, texel, body_.constants.null(call.getType()));
}

Id Images::store(const CallInst& call) {
    const Image& to = image(call.getArgOperand(0));
    if (!to.isStorage)
        throw TranslationError("A texture is written that was not declared to be.");
    body_.module.require(spv::Capability::StorageImageWriteWithoutFormat);
    Id texel = body_.id(call.getArgOperand(2));
    if (to.texture->component == TextureComponent::int_)
        texel = body_.emit(spv::Op::OpBitcast, body_.types.signedVector(), {texel});
    body_.act(spv::Op::OpImageWrite, {load(to), body_.id(call.getArgOperand(1)), texel});
    return 0;
}

Id Images::write(StringRef name, const CallInst& call) {
    if (name == "read")
        return read(call);
    if (name == "write")
        return store(call);
    if (name.starts_with("sample") && name != "samples")
        return sample(name, call);
    if (name.starts_with("gather"))
        return gather(name, call);
    return query(name, call);
}

} // namespace tarnwick::msl::spirv
