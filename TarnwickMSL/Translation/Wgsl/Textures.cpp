#include "TarnwickMSL/Translation/Wgsl/Textures.h"

#include "TarnwickMSL/Translation/TranslationError.h"
#include "TarnwickMSL/Translation/Wgsl/Operations.h"

#include <llvm/ADT/StringSwitch.h>

namespace tarnwick::msl::wgsl {

using namespace llvm;

[[noreturn]] static void refuse(const std::string& lack) {
    throw TranslationError("WGSL has no " + lack + ".");
}

bool Textures::takes(StringRef name) {
    return name.starts_with("sample") || name.starts_with("gather") || name.starts_with("texel_") ||
           StringSwitch<bool>(name)
               .Cases("read", "write", "lod", "color_input", true)
               .Cases("width", "height", "depth", "levels", "layers", true)
               .Default(false);
}

// The format of a texture that is written. Only three formats can be read as well (WGSL, 6.5.6).
static std::string formatOf(const TextureVariable& texture) {
    const std::string channels = texture.isRead ? "r32" : "rgba32";
    const bool isReal = texture.component == TextureComponent::float_ ||
                        texture.component == TextureComponent::none;
    return channels + (isReal                                        ? "float"
                       : texture.component == TextureComponent::int_ ? "sint"
                                                                     : "uint");
}

std::string Textures::typeOf(const Image& image, Resource& resource) const {
    const TextureVariable& texture = *image.texture;
    const Shape& shape = shapeOf(image.shape);
    if (texture.component == TextureComponent::ulong_)
        refuse("textures of 64-bit integers");
    if (image.isStorage) {
        if (shape.storage.empty())
            refuse("multisampled textures that are written");
        resource.format = formatOf(texture);
        return std::string(shape.storage) + "<" + resource.format + ", " +
               (texture.isRead ? "read_write>" : "write>");
    }
    if (texture.isDepth && shape.depth.empty())
        refuse("depth textures of this shape");
    return texture.isDepth ? std::string(shape.depth)
                           : std::string(shape.sampled) + "<" +
                                 std::string(componentName(texture.component)) + ">";
}

void Textures::declare(Image& made) {
    const TextureVariable& texture = *made.texture;
    const bool isFirst = none_of(resources_, [&](const Resource& known) {
        return known.binding == texture.binding && known.shape != TextureShape::none;
    });
    Resource resource{
        .kind = made.isStorage ? ResourceKind::storageTexture : ResourceKind::sampledTexture,
        .index = texture.index < firstMemberTexture ? texture.index % mostTextures : texture.index,
        .binding = isFirst ? texture.binding : nextBinding_++,
        .isWritten = made.isStorage,
        .shape = made.shape,
        .component = texture.component,
        .isDepth = texture.isDepth,
        .level = made.isStorage ? made.level : 0};
    const std::string type = typeOf(made, resource);
    made.name = body_.names.make(texture.name.empty() ? "texture" + std::to_string(resource.index)
                                                      : texture.name);
    body_.declare("@group(0) @binding(" + std::to_string(resource.binding) + ") var " + made.name +
                  ": " + type + ";\n");
    resources_.push_back(std::move(resource));
}

const TextureVariable& Textures::texture(const Value* handle) const {
    auto* constant = dyn_cast<ConstantInt>(handle);
    if (!constant)
        throw TranslationError("The texture must be known at compile time.");
    for (const TextureVariable& texture : body_.shader.textures)
        if (texture.index == constant->getZExtValue())
            return texture;
    throw TranslationError("The texture is not an argument of the entry point.");
}

Textures::Image& Textures::image(const Value* handle, bool ofTexels, std::uint32_t level) {
    const TextureVariable& texture = this->texture(handle);
    const bool isCube =
        texture.shape == TextureShape::cube || texture.shape == TextureShape::cubeArray;
    const TextureShape shape =
        isCube && (ofTexels || texture.isWritten) ? TextureShape::d2Array : texture.shape;
    Image& known = images_[{texture.index, static_cast<std::uint32_t>(shape),
                            texture.isWritten ? level : ~0u}];
    if (!known.texture) {
        known.texture = &texture;
        known.shape = shape;
        known.level = level;
        known.isStorage = texture.isWritten;
        declare(known);
    }
    return known;
}

// The view that a call reads or writes. A store goes to one level, which the view must select.
Textures::Image& Textures::texels(const CallInst& call, unsigned levelOperand) {
    const Value* handle = call.getArgOperand(0);
    if (!texture(handle).isWritten || call.arg_size() <= levelOperand)
        return image(handle, true);
    auto* level = dyn_cast<ConstantInt>(call.getArgOperand(levelOperand));
    if (!level)
        throw CompilerFault("A texture is written at a level that Passes/TextureLevels should have "
                            "made constant.");
    return image(handle, true, static_cast<std::uint32_t>(level->getZExtValue()));
}

std::optional<Expression> Textures::write(StringRef name, const CallInst& call) {
    if (name == "read")
        return read(call);
    if (name == "write") {
        store(call);
        return std::nullopt;
    }
    if (name.starts_with("texel_"))
        refuse("atomic operations on textures");
    if (name == "color_input")
        return colorSoFar(call);
    if (name.starts_with("sample_compare"))
        return compare(name, call);
    if (name.starts_with("sample") && name != "samples")
        return sample(name, call);
    if (name.starts_with("gather"))
        return gather(name, call);
    if (name == "lod")
        return queryLevel(call);
    return query(name, call);
}

} // namespace tarnwick::msl::wgsl
