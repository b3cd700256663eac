// Calls that sample: samples, comparisons, gathered texels, and queries of the level of detail.
// Most are WGSL's own functions; SampleFunctions.h says what the others are for.
#include "TarnwickMSL/SamplerBits.h"
#include "TarnwickMSL/Translation/TranslationError.h"
#include "TarnwickMSL/Translation/Wgsl/Operations.h"
#include "TarnwickMSL/Translation/Wgsl/SampleFunctions.h"
#include "TarnwickMSL/Translation/Wgsl/Textures.h"
#include "TarnwickMSL/Translation/Wgsl/Vectors.h"

namespace tarnwick::msl::wgsl {

using namespace llvm;

[[noreturn]] static void refuse(const std::string& lack) {
    throw TranslationError("WGSL has no " + lack + ".");
}

// WebGPU's state: the text has borders and coordinates in pixels.
static std::uint64_t withoutBorders(std::uint64_t bits) {
    SamplerState state = unpackSampler(bits);
    for (SamplerAddress* address : {&state.s, &state.t, &state.r})
        if (*address == SamplerAddress::clampToZero || *address == SamplerAddress::clampToBorder)
            *address = SamplerAddress::clampToEdge;
    state.coord = SamplerCoord::normalized;
    state.border = SamplerBorder::transparentBlack;
    return packSampler(state);
}

// In Metal a call compares, in WebGPU a sampler does: a sampler of both uses becomes two.
std::string Textures::sampler(std::uint64_t bits, bool compares) {
    static constexpr std::uint64_t compareBits = 7ull << 18;
    const bool isArgument = bits & samplerArgumentBit;
    if (!isArgument)
        bits = withoutBorders(bits);
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

// Of a sampler for calls that name a whole level and one filter.
std::string Textures::levelSampler(const SamplerState& state, bool compares) {
    SamplerState plain = state;
    plain.min = plain.mag;
    plain.mip = SamplerMipFilter::nearest;
    plain.lodMin = 0;
    plain.lodMax = SamplerState{}.lodMax;
    plain.maxAnisotropy = 1;
    return sampler(packSampler(plain), compares);
}

static std::uint64_t samplerBits(const CallInst& call) {
    auto* bits = dyn_cast<ConstantInt>(call.getArgOperand(1));
    if (!bits)
        throw TranslationError("The sampler must be known at compile time.");
    return bits->getZExtValue();
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

static const Value* argumentOrNull(const CallInst& call, unsigned argument) {
    return argument < call.arg_size() ? call.getArgOperand(argument) : nullptr;
}

// `first` is the operand after the coordinates and the reference of a comparison.
Textures::Sampled Textures::sampled(const CallInst& call, StringRef kind, unsigned first,
                                    const Value* offset) {
    const std::uint64_t bits = samplerBits(call);
    const TextureVariable& texture = this->texture(call.getArgOperand(0));
    const bool isInteger =
        texture.component == TextureComponent::int_ || texture.component == TextureComponent::uint_;
    const bool gathers = kind == "gather";
    Image& from = image(call.getArgOperand(0), isInteger && !gathers);
    if (from.isStorage)
        refuse("sampling of a texture that the function writes");
    const bool isArgument = bits & samplerArgumentBit;
    if (isInteger && isArgument && !gathers)
        refuse("sampling of textures of integers with a sampler argument");
    return {.call = &call,
            .from = &from,
            .shape = &shapeOf(texture.shape),
            .state = isArgument ? SamplerState{} : unpackSampler(bits),
            .bits = bits,
            .isArgument = isArgument,
            .isInteger = isInteger,
            .kind = kind == "_level"  ? LevelKind::given
                    : kind == "_bias" ? LevelKind::biased
                    : kind == "_grad" ? LevelKind::sloped
                                      : LevelKind::implied,
            .first = first,
            .offset = offset};
}

// Coordinates, and the layer as an integer of its own.
void Textures::place(Sampled& of, bool hasLayer) {
    const Shape& shape = *of.shape;
    const unsigned axes = shape.isCube() ? 3 : shape.axes;
    hasLayer &= shape.isArray;
    Expression all = body_.value(of.call->getArgOperand(2));
    if (hasLayer)
        all = body_.named(all, "place");
    Expression at = hasLayer ? axesOf(all, axes) : all;
    const auto perPixel = [&](const Expression& value) {
        return infix(value, "/", wgsl::call(lanesOf(axes, 'f'), {size(*of.from, body_.number(0))}));
    };
    if (of.state.coord == SamplerCoord::pixel)
        at = perPixel(at);
    const Value* offset = of.offset;
    const bool isPlain = offset && isPlainOffset(offset);
    if (offset && !isPlain)
        at = infix(at, "+", perPixel(wgsl::call(lanesOf(axes, 'f'), {body_.signedValue(offset)})));
    if (isPlain && !isa<UndefValue>(offset) && !cast<Constant>(offset)->isNullValue())
        of.shift = inRow(shape, body_.constant(cast<Constant>(offset), Sign::yes), "vec2i", "0i");
    of.place = {inRow(shape, at, "vec2f", "0.5f")};
    if (hasLayer) // the nearest layer, from 0 on
        of.place.push_back(wgsl::call("u32", {wgsl::call("round", {layerOf(all, axes)})}));
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

// The level that belongs to the changes of the coordinates from pixel to pixel.
Expression Textures::levelOf(const Sampled& of, Expression across, Expression down) {
    const Shape& shape = *of.shape;
    Expression size = wgsl::call("textureDimensions", {{.text = of.from->name}});
    size = shape.isCube() ? wgsl::call("f32", {laneOf(size, 0)})
                          : wgsl::call(lanesOf(shape.lanes(), 'f'), {size});
    for (Expression* change : {&across, &down}) {
        if (shape.isCube())
            *change = wgsl::call(cubeChangeFunction(body_), {of.place.front(), *change});
        *change = infix(*change, "*", size);
    }
    return wgsl::call(levelFunction(body_, shape.lanes()), {across, down});
}

static bool isConstantZero(const Value* level) {
    auto* number = dyn_cast<ConstantFP>(level);
    return number && (number->isZero() || number->isNegative());
}

// Absent for the first level. Before the limits of the sampler and the texture.
std::optional<Expression> Textures::level(Sampled& of) {
    const auto operand = [&](unsigned n) { return body_.value(of.call->getArgOperand(n)); };
    const auto implied = [&]() -> std::optional<Expression> {
        if (body_.stage != Stage::fragment) // no neighbours
            return std::nullopt;
        body_.turnOff("derivative_uniformity");
        of.place.front() = body_.named(of.place.front(), "at");
        Expression across = wgsl::call("dpdx", {of.place.front()});
        across.isConvergent = true;
        return levelOf(of, across, wgsl::call("dpdy", {of.place.front()}));
    };
    if (of.shape->shape == TextureShape::d1) // has one level
        return std::nullopt;
    switch (of.kind) {
    case LevelKind::implied:
        return implied();
    case LevelKind::given:
        if (isConstantZero(of.call->getArgOperand(of.first)))
            return std::nullopt;
        return operand(of.first);
    case LevelKind::biased: {
        const std::optional<Expression> level = implied();
        return level ? infix(*level, "+", operand(of.first)) : operand(of.first);
    }
    case LevelKind::sloped:
        of.place.front() = body_.named(of.place.front(), "at");
        return levelOf(of, inRow(*of.shape, operand(of.first), "vec2f", "0.0f"),
                       inRow(*of.shape, operand(of.first + 1), "vec2f", "0.0f"));
    }
    return std::nullopt;
}

// Vulkan 1.3, 16.5.8: the nearest of two equally near levels is the lower one.
static Expression nearestLevel(Body& body, const Expression& level) {
    const Expression sum = infix(level, "+", body.real(body.f32(), 0.5));
    return infix(call("ceil", {sum}), "-", body.real(body.f32(), 1));
}

Expression Textures::withinLevels(const Sampled& of, const Expression& level) {
    const auto number = [&](float value) { return body_.real(body_.f32(), value); };
    Expression made = wgsl::call("max", {level, number(of.state.lodMin)});
    if (of.state.lodMax < SamplerState{}.lodMax)
        made = wgsl::call("min", {made, number(std::max(of.state.lodMin, of.state.lodMax))});
    return wgsl::call("min", {made, lastLevel(of)});
}

Expression Textures::lastLevel(const Sampled& of) {
    const Expression levels = wgsl::call("textureNumLevels", {{.text = of.from->name}});
    return wgsl::call("f32", {infix(levels, "-", body_.number(1))});
}

// The levels that the sampler takes, mixed as it mixes them. `sample` gives that of a whole level.
Expression Textures::atLevels(Sampled& of, const SampleOfLevel& sample) {
    const Expression first = body_.real(body_.f32(), 0);
    const SamplerState& state = of.state;
    const bool hasLevels = state.mip != SamplerMipFilter::none;
    const bool choosesFilter = state.mag != state.min && !of.isInteger;
    std::optional<Expression> level;
    if (hasLevels || choosesFilter)
        level = this->level(of);
    if (!level && state.lodMin == 0)
        return sample(state.mag, first);
    of.place.front() = body_.named(of.place.front(), "at");
    const Expression given = body_.named(level.value_or(first), "level");
    const auto filtered = [&](SamplerFilter filter) {
        if (!hasLevels)
            return sample(filter, first);
        const Expression within = body_.named(withinLevels(of, given), "level");
        if (state.mip == SamplerMipFilter::nearest || of.isInteger)
            return sample(filter, body_.named(nearestLevel(body_, within), "level"));
        const Expression lower = body_.named(wgsl::call("floor", {within}), "lower");
        const Expression above = infix(lower, "+", body_.real(body_.f32(), 1));
        const Expression upper = body_.named(wgsl::call("min", {above, lastLevel(of)}), "upper");
        return wgsl::call(
            "mix", {sample(filter, lower), sample(filter, upper), infix(within, "-", lower)});
    };
    const bool isBelowFirst = of.kind == LevelKind::given &&
                              isa<ConstantFP>(of.call->getArgOperand(of.first)) &&
                              !isConstantZero(of.call->getArgOperand(of.first));
    if (!choosesFilter || isBelowFirst)
        return filtered(isBelowFirst ? state.min : state.mag);
    return choice(infix(given, ">", first), filtered(state.min), filtered(state.mag));
}

SampleForm Textures::formOf(const Sampled& of, bool compares) {
    const TextureVariable& texture = *of.from->texture;
    Resource ignored;
    return {.shape = &shapeOf(of.from->shape),
            .texture = typeOf(*of.from, ignored),
            .texel = texture.isDepth                                ? "f32"
                     : texture.component == TextureComponent::int_  ? "vec4i"
                     : texture.component == TextureComponent::uint_ ? "vec4u"
                                                                    : "vec4f",
            .isDepth = texture.isDepth,
            .compares = compares,
            .state = of.state,
            .offset = of.shift ? of.shift->text : ""};
}

static std::vector<Expression> joined(std::vector<Expression> all,
                                      std::initializer_list<std::vector<Expression>> others) {
    for (const std::vector<Expression>& other : others)
        all.insert(all.end(), other.begin(), other.end());
    return all;
}

// The nearest texel: textures of integers have no other filter in Metal.
Expression Textures::sampleIntegers(Sampled& of) {
    SampleForm form = formOf(of, false);
    form.state.mag = SamplerFilter::nearest;
    if (of.shape->isCube()) {
        form.state.s = form.state.t = SamplerAddress::clampToEdge;
        of.place.front() = body_.named(of.place.front(), "at");
    }
    return atLevels(of, [&](SamplerFilter, const Expression& level) {
        std::vector<Expression> place = of.place;
        if (of.shape->isCube()) {
            const Expression onFace =
                body_.named(wgsl::call(cubeFaceFunction(body_), {of.place.front()}), "onFace");
            Expression face = wgsl::call("u32", {member(onFace, "z")});
            if (of.shape->isArray) {
                const Expression layers = wgsl::call("textureNumLayers", {{.text = of.from->name}});
                const Expression last =
                    infix(infix(layers, "/", body_.number(6)), "-", body_.number(1));
                const Expression cube = wgsl::call("min", {of.place.back(), last});
                face = infix(infix(cube, "*", body_.number(6)), "+", face);
            }
            place = {member(onFace, "xy"), face};
        }
        return wgsl::call(texelSample(body_, form),
                          joined({{.text = of.from->name}}, {place, {level}}));
    });
}

// Samples of whole levels, with borders.
Expression Textures::sampleLevels(Sampled& of) {
    return atLevels(of, [&](SamplerFilter filter, const Expression& level) {
        SampleForm form = formOf(of, false);
        form.state.mag = filter;
        const std::vector<Expression> start = {{.text = of.from->name},
                                               {.text = levelSampler(form.state, false)}};
        if (hasBorder(form.state, *form.shape))
            return wgsl::call(borderSample(body_, form), joined(start, {of.place, {level}}));
        std::vector<Expression> operands = joined(start, {of.place});
        operands.push_back(form.isDepth ? wgsl::call("i32", {level}) : level);
        if (of.shift)
            operands.push_back(*of.shift);
        return wgsl::call("textureSampleLevel", operands);
    });
}

Expression Textures::sample(StringRef name, const CallInst& call) {
    name.consume_front("sample");
    const unsigned extra = name.empty() ? 0 : name == "_grad" ? 2 : 1;
    Sampled of = sampled(call, name, 3, argumentOrNull(call, 3 + extra));
    place(of);
    if (of.isInteger)
        return texel(*of.from, call, sampleIntegers(of));
    const bool hasNeighbours = body_.stage == Stage::fragment;
    const bool isOfDepth = of.from->texture->isDepth;
    const bool isOfOneLevel = of.shape->shape == TextureShape::d1;
    // WGSL samples depth textures at whole levels, and neither with a bias nor by gradients.
    const bool isOfDepthLevels =
        isOfDepth &&
        !(of.kind == LevelKind::implied || (of.kind == LevelKind::biased && !hasNeighbours) ||
          (of.kind == LevelKind::given && isConstantZero(call.getArgOperand(3))));
    if (!of.isArgument && (isOfDepthLevels || hasBorder(of.state, *of.shape)))
        return texel(*of.from, call, sampleLevels(of));
    const auto operand = [&](unsigned n) { return body_.value(call.getArgOperand(n)); };
    std::vector<Expression> operands =
        joined({{.text = of.from->name}, {.text = sampler(of.bits, false)}}, {of.place});
    std::string function = "textureSampleLevel";
    if (isOfOneLevel && of.kind != LevelKind::implied) {
        operands.push_back({.text = "0.0f"});
    } else if (of.kind == LevelKind::sloped) {
        if (isOfDepth)
            refuse("sampling of depth textures by gradients");
        function = "textureSampleGrad";
        for (unsigned gradient : {3u, 4u})
            operands.push_back(inRow(*of.shape, operand(gradient), "vec2f", "0.0f"));
    } else if (of.kind == LevelKind::biased && hasNeighbours) {
        if (isOfDepth)
            refuse("sampling of depth textures with a bias");
        function = "textureSampleBias";
        operands.push_back(operand(3));
    } else if (of.kind != LevelKind::implied) {
        operands.push_back(isOfDepth ? wgsl::call("i32", {operand(3)}) : operand(3));
    } else if (hasNeighbours) {
        function = "textureSample";
    } else {
        operands.push_back({.text = isOfDepth ? "0i" : "0.0f"});
    }
    if (of.shift)
        operands.push_back(*of.shift);
    Expression value = wgsl::call(function, operands);
    value.isConvergent |= function == "textureSample" || function == "textureSampleBias";
    if (value.isConvergent)
        body_.turnOff("derivative_uniformity");
    return texel(*of.from, call, value);
}

// Comparisons of texels that are loaded, or at the first level with a border.
Expression Textures::compareLevels(Sampled& of, const Expression& reference) {
    const Expression kept = body_.named(reference, "reference");
    const bool isFirst =
        of.state.mip == SamplerMipFilter::none ||
        (of.kind == LevelKind::given && isConstantZero(of.call->getArgOperand(of.first)));
    return atLevels(of, [&](SamplerFilter filter, const Expression& level) {
        SampleForm form = formOf(of, true);
        form.state.mag = filter;
        if (!isFirst)
            return wgsl::call(texelSample(body_, form),
                              joined({{.text = of.from->name}}, {of.place, {level, kept}}));
        const std::vector<Expression> start = {{.text = of.from->name},
                                               {.text = levelSampler(form.state, true)}};
        if (hasBorder(form.state, *form.shape))
            return wgsl::call(borderSample(body_, form), joined(start, {of.place, {level, kept}}));
        std::vector<Expression> operands = joined(start, {of.place, {kept}});
        if (of.shift)
            operands.push_back(*of.shift);
        return wgsl::call("textureSampleCompareLevel", operands);
    });
}

Expression Textures::compare(StringRef name, const CallInst& call) {
    name.consume_front("sample_compare");
    const unsigned extra = name.empty() ? 0 : name == "_grad" ? 2 : 1;
    Sampled of = sampled(call, name, 4, argumentOrNull(call, 4 + extra));
    place(of);
    const Expression reference = body_.value(call.getArgOperand(3));
    const bool isImplicit = of.kind == LevelKind::implied && body_.stage == Stage::fragment;
    const bool isFirst =
        !isImplicit && (of.kind == LevelKind::implied ||
                        (of.kind == LevelKind::given && isConstantZero(call.getArgOperand(4))));
    const bool isPlain = of.isArgument || !hasBorder(of.state, *of.shape);
    if (!isPlain || !(isImplicit || isFirst)) {
        if (of.isArgument || (of.shape->isCube() && of.state.mip != SamplerMipFilter::none))
            refuse("comparison with a depth texture by a bias, gradients or a level but 0, but for "
                   "constant samplers, and not with cubes");
        return compareLevels(of, reference);
    }
    std::vector<Expression> operands =
        joined({{.text = of.from->name}, {.text = sampler(of.bits, true)}}, {of.place});
    operands.push_back(reference);
    if (of.shift)
        operands.push_back(*of.shift);
    Expression value =
        wgsl::call(isImplicit ? "textureSampleCompare" : "textureSampleCompareLevel", operands);
    value.isConvergent |= isImplicit;
    if (isImplicit)
        body_.turnOff("derivative_uniformity");
    return value;
}

Expression Textures::gather(StringRef name, const CallInst& call) {
    const bool compares = name == "gather_compare";
    const unsigned last = call.arg_size() - 1; // the component, if it does not compare
    const Value* offset = compares   ? argumentOrNull(call, 4)
                          : last > 3 ? call.getArgOperand(3)
                                     : nullptr;
    Sampled of = sampled(call, "gather", 0, offset);
    const bool isOfDepth = of.from->texture->isDepth;
    const auto* component = compares ? nullptr : dyn_cast<ConstantInt>(call.getArgOperand(last));
    if (!compares && !component)
        throw TranslationError("The component to gather must be known at compile time.");
    place(of);
    std::vector<Expression> operands;
    const bool isBordered = !of.isArgument && hasBorder(of.state, *of.shape);
    if (component && !isOfDepth && !isBordered)
        operands.push_back(body_.value(component));
    operands.push_back({.text = of.from->name});
    // A gather has no filter, and WebGPU takes none for integers.
    SamplerState nearest = of.state;
    nearest.mag = SamplerFilter::nearest;
    operands.push_back({.text = of.isInteger && !of.isArgument ? levelSampler(nearest, compares)
                                                               : sampler(of.bits, compares)});
    operands = joined(operands, {of.place});
    if (compares)
        operands.push_back(body_.value(call.getArgOperand(3)));
    Expression made;
    if (isBordered) {
        const auto number = component ? static_cast<unsigned>(component->getZExtValue()) : 0;
        made = wgsl::call(borderGather(body_, formOf(of, compares), number), operands);
    } else {
        if (of.shift)
            operands.push_back(*of.shift);
        made = wgsl::call(compares ? "textureGatherCompare" : "textureGather", operands);
    }
    made.isSigned = of.from->texture->component == TextureComponent::int_;
    return made;
}

// The level that a sample takes, and the level before the limits.
Expression Textures::queryLevel(const CallInst& call) {
    if (body_.stage != Stage::fragment) // both are 0 without neighbours
        return body_.zero(call.getType());
    Sampled of = sampled(call, "lod", 0, nullptr);
    const bool asksForLimits = any_of(call.users(), [](const User* user) {
        auto* extract = dyn_cast<ExtractElementInst>(user);
        auto* lane = extract ? dyn_cast<ConstantInt>(extract->getIndexOperand()) : nullptr;
        return !lane || lane->isZero();
    });
    if (of.isArgument && asksForLimits)
        refuse("query of the level of detail within the limits of a sampler argument "
               "(calculate_clamped_lod)");
    place(of, false);
    const std::optional<Expression> level = this->level(of);
    if (!level)
        return body_.zero(call.getType());
    const Expression unclamped = body_.named(*level, "level");
    Expression taken = body_.real(body_.f32(), 0);
    if (of.state.mip != SamplerMipFilter::none)
        taken = withinLevels(of, unclamped);
    if (of.state.mip == SamplerMipFilter::nearest)
        taken = nearestLevel(body_, taken);
    Expression made = wgsl::call("vec2f", {taken, unclamped});
    made.isConvergent = true;
    return made;
}

} // namespace tarnwick::msl::wgsl
