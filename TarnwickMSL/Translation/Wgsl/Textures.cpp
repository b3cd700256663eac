#include "TarnwickMSL/Translation/Wgsl/Textures.h"

#include "TarnwickMSL/SamplerBits.h"
#include "TarnwickMSL/Translation/TranslationError.h"
#include "TarnwickMSL/Translation/Wgsl/Operations.h"

#include <llvm/ADT/StringSwitch.h>

namespace tarnwick::msl::wgsl {

using namespace llvm;

namespace {

struct Shape {
    TextureShape shape;
    std::string_view sampled, depth, storage; // "": WGSL has no such type
    unsigned axes;                            // of a size, without layers
    bool isArray = false;
};

} // namespace

// clang-format off
static constexpr std::array shapes{
    Shape{TextureShape::d1,            "texture_1d",              "",                              "texture_storage_1d",       1},
    Shape{TextureShape::d1Array,       "texture_2d_array",        "",                              "texture_storage_2d_array", 1, true},
    Shape{TextureShape::d2,            "texture_2d",              "texture_depth_2d",              "texture_storage_2d",       2},
    Shape{TextureShape::d2Array,       "texture_2d_array",        "texture_depth_2d_array",        "texture_storage_2d_array", 2, true},
    Shape{TextureShape::d2Multisample, "texture_multisampled_2d", "texture_depth_multisampled_2d", "",                         2},
    Shape{TextureShape::d3,            "texture_3d",              "",                              "texture_storage_3d",       3},
    Shape{TextureShape::cube,          "texture_cube",            "texture_depth_cube",            "",                         2},
    Shape{TextureShape::cubeArray,     "texture_cube_array",      "texture_depth_cube_array",      "",                         2, true},
};
// clang-format on

static const Shape& shapeOf(TextureShape wanted) {
    for (const Shape& shape : shapes)
        if (shape.shape == wanted)
            return shape;
    throw TranslationError(
        std::string("WGSL has no ") +
        (wanted == TextureShape::buffer ? "texture buffers." : "arrays of multisampled textures."));
}

// An array of textures of one dimension is one of textures with one row. Adds the other coordinate.
static Expression inRow(const Shape& shape, const Expression& at, std::string_view lanes,
                        std::string_view other) {
    return shape.shape == TextureShape::d1Array ? call(lanes, {at, {.text = std::string(other)}})
                                                : at;
}

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

static std::string_view componentName(TextureComponent component) {
    return component == TextureComponent::int_    ? "i32"
           : component == TextureComponent::uint_ ? "u32"
                                                  : "f32";
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

std::uint64_t Textures::samplerBits(const CallInst& call) const {
    auto* bits = dyn_cast<ConstantInt>(call.getArgOperand(1));
    if (!bits)
        throw TranslationError("The sampler must be known at compile time.");
    return bits->getZExtValue();
}

// In Metal a call compares, in WebGPU a sampler does: a sampler of both uses becomes two.
std::string Textures::sampler(std::uint64_t bits, bool compares) {
    static constexpr std::uint64_t compareBits = 7ull << 18;
    const bool isArgument = bits & samplerArgumentBit;
    if (compares)
        bits |= samplerComparesBit;
    else if (!isArgument)
        bits &= ~compareBits;
    std::string& known = samplers_[{bits, compares}];
    if (!known.empty())
        return known;
    const auto index = static_cast<std::uint32_t>(bits & 0xffff);
    known = body_.names.make(isArgument ? "sampler" + std::to_string(index) : "constantSampler");
    body_.declare("@group(0) @binding(" + std::to_string(nextBinding_) + ") var " + known + ": " +
                  (compares ? "sampler_comparison" : "sampler") + ";\n");
    resources_.push_back(
        {.kind = isArgument ? ResourceKind::sampler : ResourceKind::constantSampler,
         .index = isArgument ? index : 0,
         .binding = nextBinding_++,
         .samplerState = isArgument ? bits & samplerComparesBit : bits});
    return known;
}

static Expression layerOf(const Expression& coordinates, unsigned axes) {
    return laneOf(coordinates, axes);
}

static Expression axesOf(const Expression& coordinates, unsigned axes) {
    return axes == 1 ? laneOf(coordinates, 0)
                     : member(coordinates, std::string("xyzw").substr(0, axes));
}

// Whether the offset may stand in the call: a constant of small numbers.
static bool isPlainOffset(const Value* offset) {
    auto* constant = dyn_cast<Constant>(offset);
    if (!constant)
        return false;
    for (unsigned lane = 0; lane < laneCount(constant->getType()); ++lane) {
        const Constant* element =
            constant->getType()->isVectorTy() ? constant->getAggregateElement(lane) : constant;
        auto* number = dyn_cast<ConstantInt>(element);
        if (number && (number->getSExtValue() < -8 || number->getSExtValue() > 7))
            return false;
    }
    return true;
}

// Coordinates, and the layer as an integer of its own.
std::vector<Expression> Textures::placed(const Image& image, const CallInst& call,
                                         const Value* offset) {
    const Shape& shape = shapeOf(image.shape);
    const Value* given = call.getArgOperand(2);
    const unsigned axes =
        image.shape == TextureShape::cube || image.shape == TextureShape::cubeArray ? 3
                                                                                    : shape.axes;
    Expression all = body_.value(given);
    if (shape.isArray)
        all = body_.named(all, "place");
    Expression at = shape.isArray ? axesOf(all, axes) : all;
    const std::uint64_t bits = samplerBits(call);
    const bool isPixel =
        !(bits & samplerArgumentBit) && unpackSampler(bits).coord == SamplerCoord::pixel;
    const auto perPixel = [&](const Expression& value) {
        const std::string lanes = axes == 1 ? "f32" : "vec" + std::to_string(axes) + "f";
        return infix(value, "/", wgsl::call(lanes, {size(image, body_.number(0))}));
    };
    if (isPixel)
        at = perPixel(at);
    if (offset && !isPlainOffset(offset)) {
        const std::string lanes = axes == 1 ? "f32" : "vec" + std::to_string(axes) + "f";
        at = infix(at, "+", perPixel(wgsl::call(lanes, {body_.signedValue(offset)})));
    }
    std::vector<Expression> operands{inRow(shape, at, "vec2f", "0.5f")};
    if (shape.isArray) // the nearest layer, from 0 on
        operands.push_back(wgsl::call("u32", {wgsl::call("round", {layerOf(all, axes)})}));
    return operands;
}

void Textures::addOffset(const Image& image, std::vector<Expression>& operands,
                         const Value* offset) {
    if (!offset || !isPlainOffset(offset))
        return;
    auto& constant = *cast<Constant>(offset);
    if (!constant.isNullValue() && !isa<UndefValue>(constant))
        operands.push_back(
            inRow(shapeOf(image.shape), body_.constant(&constant, Sign::yes), "vec2i", "0i"));
}

static const Value* argumentOrNull(const CallInst& call, unsigned argument) {
    return argument < call.arg_size() ? call.getArgOperand(argument) : nullptr;
}

// A depth texture gives one number, the first of four.
Expression Textures::texel(const Image& image, const CallInst& call, const Expression& value) {
    Expression made = value;
    if (image.texture->isDepth && call.getType()->isVectorTy())
        made = wgsl::call("vec4f", {value, {.text = "0.0f"}, {.text = "0.0f"}, {.text = "1.0f"}});
    made.isSigned = image.texture->component == TextureComponent::int_;
    made.isConvergent = value.isConvergent;
    return made;
}

Expression Textures::sample(StringRef name, const CallInst& call) {
    Image& from = image(call.getArgOperand(0));
    if (from.isStorage)
        refuse("sampling of a texture that the function writes");
    if (from.texture->component == TextureComponent::int_ ||
        from.texture->component == TextureComponent::uint_)
        refuse("sampling of textures of integers, which it can read and gather");
    name.consume_front("sample");
    const unsigned extra = name.empty() ? 0 : name == "_grad" ? 2 : 1;
    const Value* offset = argumentOrNull(call, 3 + extra);
    std::vector<Expression> operands{{.text = from.name},
                                     {.text = sampler(samplerBits(call), false)}};
    for (const Expression& part : placed(from, call, offset))
        operands.push_back(part);
    const bool hasLevels = body_.stage == Stage::fragment; // where neighbours give a level
    const bool isOfDepth = from.texture->isDepth;
    const auto level = [&](unsigned argument) {
        const Expression given = body_.value(call.getArgOperand(argument));
        return isOfDepth ? wgsl::call("i32", {given}) : given;
    };
    std::string function = "textureSample";
    if (name == "_grad") {
        if (isOfDepth)
            refuse("sampling of depth textures by gradients");
        function = "textureSampleGrad";
        for (unsigned gradient : {3u, 4u})
            operands.push_back(inRow(shapeOf(from.shape), body_.value(call.getArgOperand(gradient)),
                                     "vec2f", "0.0f"));
    } else if (name == "_level" || (name == "_bias" && !hasLevels)) {
        function = "textureSampleLevel";
        operands.push_back(level(3));
    } else if (name == "_bias") {
        if (isOfDepth)
            refuse("sampling of depth textures with a bias");
        function = "textureSampleBias";
        operands.push_back(body_.value(call.getArgOperand(3)));
    } else if (!hasLevels) {
        function = "textureSampleLevel";
        operands.push_back({.text = isOfDepth ? "0i" : "0.0f"});
    }
    addOffset(from, operands, offset);
    Expression value = wgsl::call(function, operands);
    value.isConvergent = function == "textureSample" || function == "textureSampleBias";
    if (value.isConvergent)
        body_.turnOff("derivative_uniformity");
    return texel(from, call, value);
}

Expression Textures::compare(StringRef name, const CallInst& call) {
    Image& from = image(call.getArgOperand(0));
    name.consume_front("sample_compare");
    const bool isLevel = name == "_level";
    auto* level = isLevel ? dyn_cast<ConstantFP>(call.getArgOperand(4)) : nullptr;
    if (name == "_bias" || name == "_grad" || (isLevel && !(level && level->isZero())))
        refuse("comparison with a depth texture by a bias, gradients or a level but 0");
    const Value* offset = argumentOrNull(call, isLevel ? 5 : 4);
    std::vector<Expression> operands{{.text = from.name},
                                     {.text = sampler(samplerBits(call), true)}};
    for (const Expression& part : placed(from, call, offset))
        operands.push_back(part);
    operands.push_back(body_.value(call.getArgOperand(3)));
    addOffset(from, operands, offset);
    const bool isImplicit = !isLevel && body_.stage == Stage::fragment;
    Expression value =
        wgsl::call(isImplicit ? "textureSampleCompare" : "textureSampleCompareLevel", operands);
    value.isConvergent = isImplicit;
    if (isImplicit)
        body_.turnOff("derivative_uniformity");
    return value;
}

Expression Textures::gather(StringRef name, const CallInst& call) {
    Image& from = image(call.getArgOperand(0));
    const bool compares = name == "gather_compare";
    const unsigned last = call.arg_size() - 1; // the component, if it does not compare
    const Value* offset = compares   ? argumentOrNull(call, 4)
                          : last > 3 ? call.getArgOperand(3)
                                     : nullptr;
    std::vector<Expression> operands;
    if (!compares && !isa<Constant>(call.getArgOperand(last)))
        throw TranslationError("The component to gather must be known at compile time.");
    if (!compares && !from.texture->isDepth)
        operands.push_back(body_.value(call.getArgOperand(last)));
    operands.push_back({.text = from.name});
    operands.push_back({.text = sampler(samplerBits(call), compares)});
    for (const Expression& part : placed(from, call, offset))
        operands.push_back(part);
    if (compares)
        operands.push_back(body_.value(call.getArgOperand(3)));
    addOffset(from, operands, offset);
    Expression made = wgsl::call(compares ? "textureGatherCompare" : "textureGather", operands);
    made.isSigned = from.texture->component == TextureComponent::int_;
    return made;
}

// The size at a level: unsigned integers of as many lanes as the image has axes.
Expression Textures::size(const Image& image, const Expression& level) {
    const bool hasLevels = !image.isStorage && image.shape != TextureShape::d2Multisample;
    std::vector<Expression> operands{{.text = image.name}};
    if (hasLevels && level.text != "0u")
        operands.push_back(level);
    const Expression size = call("textureDimensions", operands);
    return image.shape == TextureShape::d1Array ? laneOf(size, 0) : size;
}

Expression Textures::query(StringRef name, const CallInst& call) {
    const Image& of = image(call.getArgOperand(0));
    const Shape& shape = shapeOf(of.shape);
    const Expression texture{.text = of.name};
    if (name == "levels")
        return of.isStorage || of.shape == TextureShape::d2Multisample
                   ? body_.number(1)
                   : wgsl::call("textureNumLevels", {texture});
    if (name == "samples")
        return wgsl::call("textureNumSamples", {texture});
    if (name == "layers") {
        const Expression layers = wgsl::call("textureNumLayers", {texture});
        const bool countsFaces =
            of.texture->shape == TextureShape::cubeArray && of.shape != TextureShape::cubeArray;
        return countsFaces ? infix(layers, "/", body_.number(6)) : layers;
    }
    const Expression level =
        call.arg_size() > 1 ? body_.value(call.getArgOperand(1)) : body_.number(0);
    const Expression all = size(of, level);
    if (shape.axes == 1)
        return all;
    return laneOf(all, name == "width" ? 0 : name == "height" ? 1 : 2);
}

// The coordinates of a read, and whether the texture has that texel.
Textures::Spot Textures::spot(const Image& from, const CallInst& call) {
    const Shape& shape = shapeOf(from.shape);
    const bool isMultisample = from.shape == TextureShape::d2Multisample;
    const Expression given = body_.named(body_.unsignedValue(call.getArgOperand(1)), "texel");
    Spot spot;
    spot.at = shape.isArray ? axesOf(given, shape.axes) : given;
    spot.level = call.arg_size() > 2 && (isMultisample || !from.isStorage)
                     ? body_.named(body_.unsignedValue(call.getArgOperand(2)), "level")
                     : body_.number(0);
    Expression size = this->size(from, spot.level);
    const bool isFirst = spot.level.text == "0u";
    if (!isFirst && !isMultisample) { // a level that is not there has no size
        const Expression levels = wgsl::call("textureNumLevels", {{.text = from.name}});
        const Expression last = infix(levels, "-", body_.number(1));
        size = this->size(from, wgsl::call("min", {spot.level, last}));
    }
    const Expression inside = infix(spot.at, "<", size);
    spot.inside = shape.axes == 1 ? inside : wgsl::call("all", {inside});
    const auto require = [&](const Expression& value, const Expression& limit) {
        spot.inside = infix(infix(value, "<", limit), "&", spot.inside);
    };
    if (shape.isArray)
        require(layerOf(given, shape.axes), wgsl::call("textureNumLayers", {{.text = from.name}}));
    if (isMultisample && !isFirst)
        require(spot.level, wgsl::call("textureNumSamples", {{.text = from.name}}));
    if (!isMultisample && !isFirst)
        require(spot.level, wgsl::call("textureNumLevels", {{.text = from.name}}));
    if (shape.isArray)
        spot.at = {.text = inRow(shape, spot.at, "vec2u", "0u").text + ", " +
                           layerOf(given, shape.axes).text};
    return spot;
}

// A read outside the texture gives zero.
Expression Textures::read(const CallInst& call) {
    const Image& from = texels(call, 2);
    const Spot spot = this->spot(from, call);
    std::vector<Expression> operands{{.text = from.name}, spot.at};
    if (!from.isStorage)
        operands.push_back(spot.level);
    Expression loaded = wgsl::call("textureLoad", operands);
    loaded.readsMemory = from.isStorage;
    const Expression value = texel(from, call, loaded);
    const Sign sign = value.isSigned ? Sign::yes : Sign::no;
    Expression zero = body_.constant(Constant::getNullValue(call.getType()), sign);
    Expression made = choice(spot.inside, value, zero);
    made.readsMemory = from.isStorage;
    return made;
}

void Textures::store(const CallInst& call) {
    const Image& to = texels(call, 3);
    if (!to.isStorage)
        throw CompilerFault("A texture is written that was not declared to be.");
    const Shape& shape = shapeOf(to.shape);
    const Expression given = body_.named(body_.unsignedValue(call.getArgOperand(1)), "texel");
    std::string at = given.text;
    if (shape.isArray)
        at = inRow(shape, axesOf(given, shape.axes), "vec2u", "0u").text + ", " +
             layerOf(given, shape.axes).text;
    const Value* value = call.getArgOperand(2);
    const bool isSigned = to.texture->component == TextureComponent::int_;
    const Expression texel = isSigned ? body_.signedValue(value) : body_.unsignedValue(value);
    body_.changeShared("textureStore(" + to.name + ", " + at + ", " + asArgument(texel) + ");");
}

// The colours so far, which a fragment function takes as arguments (Metal Shading Language 3.1,
// 5.2.3.4). They are texels of a texture that the host binds.
Expression Textures::colorSoFar(const CallInst& call) {
    const auto index =
        static_cast<std::uint32_t>(cast<ConstantInt>(call.getArgOperand(0))->getZExtValue());
    const StringRef suffix = call.getCalledFunction()->getName().rsplit('.').second;
    const TextureComponent component = suffix == "f32"   ? TextureComponent::float_
                                       : suffix == "s32" ? TextureComponent::int_
                                                         : TextureComponent::uint_;
    std::string& name = colors_[{index, suffix.str()}];
    if (name.empty()) {
        name = body_.names.make("color" + std::to_string(index));
        body_.declare("@group(0) @binding(" + std::to_string(nextBinding_) + ") var " + name +
                      ": texture_2d<" + std::string(componentName(component)) + ">;\n");
        resources_.push_back({.kind = ResourceKind::colorInput,
                              .index = index,
                              .binding = nextBinding_++,
                              .shape = TextureShape::d2,
                              .component = component});
    }
    const Expression position = body_.builtIn("position", "vec4f");
    const Expression pixel = wgsl::call("vec2u", {member(position, "xy")});
    Expression made = wgsl::call("textureLoad", {{.text = name}, pixel, body_.number(0)});
    made.isSigned = component == TextureComponent::int_;
    return made;
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
    if (name == "lod") {
        if (body_.stage != Stage::fragment) // both are 0 without neighbours
            return body_.zero(call.getType());
        refuse("query of the level of detail (calculate_clamped_lod)");
    }
    return query(name, call);
}

} // namespace tarnwick::msl::wgsl
