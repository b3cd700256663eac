#include "TarnwickMSL/Translation/TranslationError.h"
#include "TarnwickMSL/Translation/Wgsl/Operations.h"
#include "TarnwickMSL/Translation/Wgsl/Textures.h"
#include "TarnwickMSL/Translation/Wgsl/Vectors.h"

namespace tarnwick::msl::wgsl {

using namespace llvm;

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
    body_.changeShared("textureStore(" + to.name + ", " + at + ", " + texel.text + ");");
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

} // namespace tarnwick::msl::wgsl
