#include "TarnwickMSL/Translation/Spirv/Images.h"

#include "TarnwickMSL/SamplerBits.h"
#include "TarnwickMSL/Translation/Spirv/ImageShapes.h"
#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/ADT/StringSwitch.h>
#include <llvm/IR/InstIterator.h>

namespace tarnwick::msl::spirv {

using namespace llvm;

Images::Images(Body& body, const ShaderModule& shader, std::uint32_t nextBinding)
    : body_(body), shader_(shader), nextBinding_(nextBinding) {
    for (const Instruction& instruction : instructions(*shader.main)) {
        auto* call = dyn_cast<CallInst>(&instruction);
        const Function* callee = call ? call->getCalledFunction() : nullptr;
        if (callee && callee->getName().starts_with("msl.texel_"))
            if (auto* handle = dyn_cast<ConstantInt>(call->getArgOperand(0)))
                atomics_.insert(handle->getZExtValue());
    }
}

bool Images::takes(StringRef name) {
    return name.starts_with("sample") || name.starts_with("gather") || name.starts_with("texel_") ||
           StringSwitch<bool>(name)
               .Cases("read", "write", "lod", "color_input", true)
               .Cases("width", "height", "depth", "levels", "layers", true)
               .Default(false);
}

// The one format of a texture with atomic operations (Vulkan 1.3, A.4.3).
static spv::ImageFormat atomicFormat(TextureComponent component) {
    return component == TextureComponent::ulong_ ? spv::ImageFormat::R64ui
           : component == TextureComponent::int_ ? spv::ImageFormat::R32i
                                                 : spv::ImageFormat::R32ui;
}

Id Images::componentType(TextureComponent component) {
    switch (component) {
    case TextureComponent::uint_:
        return body_.types.of(body_.i32());
    case TextureComponent::int_:
        return body_.types.signedScalar();
    case TextureComponent::ulong_:
        body_.module.require(spv::Capability::Int64ImageEXT);
        body_.module.extension("SPV_EXT_shader_image_int64");
        return body_.types.of(Type::getInt64Ty(body_.types.context()));
    case TextureComponent::none:
    case TextureComponent::float_:
        break;
    }
    return body_.types.of(body_.f32());
}

Id Images::imageType(const Image& made) {
    const TextureVariable& texture = *made.texture;
    const ImageShape& shape = *made.shape;
    Module& module = body_.module;
    if (auto capability = made.isStorage ? shape.storage : shape.sampled)
        module.require(*capability);
    auto format = made.isAtomic ? atomicFormat(texture.component) : spv::ImageFormat::Unknown;
    return module.type(spv::Op::OpTypeImage,
                       {componentType(texture.component),
                        static_cast<std::uint32_t>(shape.dimension), texture.isDepth, shape.isArray,
                        shape.isMultisample, made.isStorage ? 2u : 1u,
                        static_cast<std::uint32_t>(format)});
}

void Images::declare(Image& made) {
    const TextureVariable& texture = *made.texture;
    made.type = imageType(made);
    auto storage = spv::StorageClass::UniformConstant;
    made.variable = body_.module.variable(storage, made.type);
    bool isFirst = none_of(resources_, [&](const Resource& known) {
        return known.binding == texture.binding && known.shape != TextureShape::none;
    });
    std::uint32_t binding = isFirst ? texture.binding : nextBinding_++;
    body_.module.bind(made.variable, binding);
    if (made.isStorage && !texture.isRead)
        body_.module.decorate(made.variable, spv::Decoration::NonReadable);
    if (made.isStorage && texture.isCoherent)
        body_.module.decorate(made.variable, spv::Decoration::Coherent);
    resources_.push_back(
        {.kind = made.isStorage ? ResourceKind::storageTexture : ResourceKind::sampledTexture,
         .index = texture.index < firstMemberTexture ? texture.index % mostTextures : texture.index,
         .binding = binding,
         .isWritten = made.isStorage,
         .shape = made.shape->shape,
         .component = texture.component,
         .isDepth = texture.isDepth,
         .level = made.isStorage ? made.level : 0,
         .isAtomic = made.isAtomic,
         .countsLevels = texture.isWritten && !made.isStorage});
}

const TextureVariable& Images::texture(const Value* handle) const {
    auto* constant = dyn_cast<ConstantInt>(handle);
    if (!constant)
        throw TranslationError("The texture must be known at compile time.");
    for (const TextureVariable& texture : shader_.textures)
        if (texture.index == constant->getZExtValue())
            return texture;
    throw TranslationError("The texture is not an argument of the entry point.");
}

Images::Image& Images::image(const Value* handle, Need need, std::uint32_t level) {
    const TextureVariable& texture = this->texture(handle);
    bool isCube = texture.shape == TextureShape::cube || texture.shape == TextureShape::cubeArray;
    bool isFlat = isCube && (need == Need::texels || texture.isWritten);
    TextureShape shape = isFlat ? TextureShape::d2Array : texture.shape;
    bool isStorage = texture.isWritten && need != Need::levels;
    Image& known =
        images_[{texture.index, static_cast<std::uint32_t>(shape), isStorage ? level : ~0u}];
    if (!known.texture) {
        known.texture = &texture;
        known.shape = &shapeOf(shape);
        known.level = level;
        known.isStorage = isStorage;
        known.isAtomic = isStorage && atomics_.contains(texture.index);
        declare(known);
    }
    return known;
}

// The view that a call reads or writes. A store goes to one level, which the view must select.
Images::Image& Images::texels(const CallInst& call, unsigned levelOperand) {
    const Value* handle = call.getArgOperand(0);
    if (!texture(handle).isWritten || call.arg_size() <= levelOperand)
        return image(handle, Need::texels);
    auto* level = dyn_cast<ConstantInt>(call.getArgOperand(levelOperand));
    if (!level)
        throw CompilerFault("A texture is written at a level that Passes/TextureLevels should have "
                            "made constant.");
    return image(handle, Need::texels, static_cast<std::uint32_t>(level->getZExtValue()));
}

Id Images::sampler(std::uint64_t bits) {
    Id& known = samplers_[bits];
    if (known)
        return known;
    known = body_.module.variable(spv::StorageClass::UniformConstant, samplerType());
    declareSampler(known, bits);
    return known;
}

void Images::declareSampler(Id variable, std::uint64_t bits) {
    body_.module.bind(variable, nextBinding_);
    bool isArgument = bits & samplerArgumentBit;
    Resource resource{.kind = isArgument ? ResourceKind::sampler : ResourceKind::constantSampler};
    resource.binding = nextBinding_++;
    if (isArgument)
        resource.index = static_cast<std::uint32_t>(bits & 0xffff);
    resource.samplerState = isArgument ? bits & samplerComparesBit : bits;
    resources_.push_back(resource);
}

Id Images::resultType(const Image& image, const CallInst& call) {
    return image.texture->component == TextureComponent::int_ ? body_.types.signedVector()
                                                              : body_.types.of(call.getType());
}

Id Images::result(const Image& image, const CallInst& call, Id value) {
    bool isSigned = image.texture->component == TextureComponent::int_;
    return isSigned ? body_.emit(spv::Op::OpBitcast, call.getType(), {value}) : value;
}

Id Images::write(StringRef name, const CallInst& call) {
    if (name == "read")
        return read(call);
    if (name == "write")
        return store(call);
    if (name.consume_front("texel_"))
        return changeTexel(name, call);
    if (name == "color_input")
        return colorSoFar(call);
    if (name.starts_with("sample") && name != "samples")
        return sample(name, call);
    if (name.starts_with("gather"))
        return gather(name, call);
    if (name == "lod")
        return levelOfDetail(call);
    return query(name, call);
}

} // namespace tarnwick::msl::spirv
