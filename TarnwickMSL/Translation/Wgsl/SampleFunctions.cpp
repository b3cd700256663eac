#include "TarnwickMSL/Translation/Wgsl/SampleFunctions.h"

#include <array>

namespace tarnwick::msl::wgsl {

static constexpr std::array<std::string_view, 3> axisNames{".x", ".y", ".z"};

static SamplerAddress addressOf(const SamplerState& state, unsigned axis) {
    return axis == 0 ? state.s : axis == 1 ? state.t : state.r;
}

static bool isBorder(SamplerAddress address) {
    return address == SamplerAddress::clampToZero || address == SamplerAddress::clampToBorder;
}

static bool hasBorder(const SampleForm& form, unsigned axis) {
    return isBorder(addressOf(form.state, axis));
}

bool hasBorder(const SamplerState& state, const Shape& shape) {
    bool found = false;
    for (unsigned axis = 0; axis < shape.axes && !shape.isCube(); ++axis)
        found |= isBorder(addressOf(state, axis));
    return found;
}

// The member of a vector of the shape's coordinates; a number has none.
static std::string lane(const Shape& shape, std::string_view vector, unsigned axis) {
    return std::string(vector) + (shape.lanes() == 1 ? "" : std::string(axisNames[axis]));
}

// One border for all axes: zero if one of them clamps to zero.
static SamplerBorder borderOf(const SampleForm& form) {
    for (unsigned axis = 0; axis < form.shape->axes; ++axis)
        if (addressOf(form.state, axis) == SamplerAddress::clampToZero)
            return SamplerBorder::transparentBlack;
    return form.state.border;
}

static std::string numberLike(const SampleForm& form, bool isOne) {
    const char kind = form.texel.back() == '2' ? 'f' : form.texel.back();
    return std::string(isOne ? "1" : "0") + (kind == 'f' ? ".0f" : std::string(1, kind));
}

static std::string borderText(const SampleForm& form) {
    const SamplerBorder border = borderOf(form);
    const bool isWhite = border == SamplerBorder::opaqueWhite;
    if (form.texel == "f32")
        return numberLike(form, isWhite);
    if (border != SamplerBorder::opaqueBlack)
        return form.texel + "(" + (isWhite ? numberLike(form, true) : "") + ")";
    const std::string zero = numberLike(form, false);
    return form.texel + "(" + zero + ", " + zero + ", " + zero + ", " + numberLike(form, true) +
           ")";
}

// The outcome of the comparison with a depth, a number.
static std::string compared(const SampleForm& form, const std::string& depth) {
    static constexpr std::array<std::string_view, 8> symbols{"",   "<",  "<=", ">",
                                                             ">=", "==", "!=", ""};
    if (form.state.compare == SamplerCompare::never)
        return "0.0f";
    if (form.state.compare == SamplerCompare::always)
        return "1.0f";
    return "select(0.0f, 1.0f, (reference " +
           std::string(symbols[static_cast<std::size_t>(form.state.compare)]) + " " + depth + "))";
}

static std::string layer(const SampleForm& form, std::string_view text) {
    return form.shape->isArray ? std::string(text) : "";
}

// The start of a function, up to the size of the level as floats.
static std::string head(const SampleForm& form, bool hasSampler, bool hasLevel) {
    const std::string lanes = lanesOf(form.shape->lanes(), 'f');
    return "fn NAME(image: " + form.texture +
           (!hasSampler     ? ""
            : form.compares ? ", by: sampler_comparison"
                            : ", by: sampler") +
           ", at: " + lanes + layer(form, ", layer: u32") + (hasLevel ? ", level: f32" : "") +
           (form.compares ? ", reference: f32" : "") + ") -> ";
}

static std::string sizeText(const SampleForm& form, bool hasLevel) {
    return "    let size = " + lanesOf(form.shape->lanes(), 'f') + "(textureDimensions(image" +
           (hasLevel ? ", u32(level)" : "") + "));\n";
}

static std::string added(const std::string& offset, const std::string& type) {
    return offset.empty() ? "" : " + " + type + "(" + offset + ")";
}

// The product of the bordered axes of `covered`, or the condition that the place is inside.
static std::string coverage(const SampleForm& form, bool isLinear) {
    std::string text;
    for (unsigned axis = 0; axis < form.shape->axes; ++axis) {
        if (!hasBorder(form, axis))
            continue;
        const std::string place = lane(*form.shape, "place", axis);
        text += text.empty() ? "" : isLinear ? " * " : " & ";
        text += isLinear ? lane(*form.shape, "covered", axis)
                         : "(" + place + " >= 0.0f) & (" + place + " < " +
                               lane(*form.shape, "size", axis) + ")";
    }
    return text;
}

std::string borderSample(Body& body, const SampleForm& form) {
    const bool isLinear = form.state.mag == SamplerFilter::linear;
    const std::string lanes = lanesOf(form.shape->lanes(), 'f');
    std::string text = head(form, true, true) + form.texel + " {\n" + sizeText(form, true);
    text += "    let place = at * size" + added(form.offset, lanes) + ";\n";
    text += "    let border = " +
            (form.compares ? compared(form, borderText(form)) : borderText(form)) + ";\n";
    const std::string at = "image, by, at" + layer(form, ", layer");
    const std::string offset = form.offset.empty() ? "" : ", " + form.offset;
    text += "    let texel = " +
            (form.compares  ? "textureSampleCompareLevel(" + at + ", reference" + offset + ")"
             : form.isDepth ? "textureSampleLevel(" + at + ", i32(level)" + offset + ")"
                            : "textureSampleLevel(" + at + ", level" + offset + ")") +
            ";\n";
    if (isLinear)
        text += "    let covered = saturate(min(place, size - place) + 0.5f);\n"
                "    let coverage = " +
                coverage(form, true) +
                ";\n    return select(border, mix(border, texel, coverage), coverage > 0.0f);\n}\n";
    else
        text += "    return select(border, texel, " + coverage(form, false) + ");\n}\n";
    return body.function("sampleWithBorder", text);
}

std::string borderGather(Body& body, const SampleForm& form, unsigned component) {
    const bool hasComponent = !form.compares && !form.isDepth;
    const std::string number = std::to_string(component) + "u, ";
    std::string border = borderText(form);
    if (form.compares)
        border = compared(form, border);
    else if (hasComponent)
        border =
            numberLike(form, borderOf(form) == SamplerBorder::opaqueWhite ||
                                 (borderOf(form) == SamplerBorder::opaqueBlack && component == 3));
    const std::string four = form.texel == "f32" ? "vec4f" : form.texel;
    const std::string at = "image, by, at" + layer(form, ", layer");
    const std::string offset = form.offset.empty() ? "" : ", " + form.offset;
    std::string text = head(form, true, false) + four + " {\n" + sizeText(form, false);
    text += "    let first = floor(at * size - 0.5f)" + added(form.offset, "vec2f") + ";\n";
    text += "    let x = first.x + vec4f(0.0f, 1.0f, 1.0f, 0.0f);\n"
            "    let y = first.y + vec4f(1.0f, 1.0f, 0.0f, 0.0f);\n";
    text += "    let texels = " +
            (form.compares ? "textureGatherCompare(" + at + ", reference" + offset + ")"
                           : "textureGather(" + (hasComponent ? number : "") + at + offset + ")") +
            ";\n    let inside = ";
    std::string inside;
    for (const auto& [axis, name] : {std::pair{0u, "x"}, std::pair{1u, "y"}})
        if (axis < form.shape->axes && hasBorder(form, axis))
            inside += (inside.empty() ? "" : " & ") + ("(" + std::string(name)) +
                      " >= vec4f()) & (" + name + " < vec4f(size." + name + "))";
    text += inside + ";\n    return select(" + four + "(" + border + "), texels, inside);\n}\n";
    return body.function("gatherWithBorder", text);
}

// The texel that an index of one axis means.
static std::string addressed(Body& body, const SampleForm& form, unsigned axis) {
    const std::string at = lane(*form.shape, "place", axis), size = lane(*form.shape, "size", axis);
    switch (addressOf(form.state, axis)) {
    case SamplerAddress::repeat:
        return body.function("repeated", "fn NAME(at: i32, size: i32) -> i32 {\n"
                                         "    return (at % size + size) % size;\n}\n") +
               "(" + at + ", " + size + ")";
    case SamplerAddress::mirroredRepeat:
        return body.function("mirrored", "fn NAME(at: i32, size: i32) -> i32 {\n"
                                         "    let period = 2i * size;\n"
                                         "    let turn = (at % period + period) % period;\n"
                                         "    return min(turn, period - 1i - turn);\n}\n") +
               "(" + at + ", " + size + ")";
    case SamplerAddress::clampToZero:
    case SamplerAddress::clampToEdge:
    case SamplerAddress::clampToBorder:
    case SamplerAddress::mirrorClampToEdge:
        break;
    }
    return "clamp(" + at + ", 0i, " + size + " - 1i)";
}

// (image, place: vec2i, [layer: u32,] level: u32 [, reference: f32]): the texel at a place that may
// be outside, or its comparison.
static std::string texelFunction(Body& body, const SampleForm& form) {
    const unsigned axes = form.shape->axes;
    const std::string whole = lanesOf(form.shape->lanes(), 'i');
    std::string at, inside;
    for (unsigned axis = 0; axis < axes; ++axis) {
        at += (axis ? ", " : "") + addressed(body, form, axis);
        const std::string place = lane(*form.shape, "place", axis);
        if (hasBorder(form, axis))
            inside += (inside.empty() ? "(" : " & (") + place + " >= 0i) & (" + place + " < " +
                      lane(*form.shape, "size", axis) + ")";
    }
    if (form.shape->shape == TextureShape::d1Array)
        at += ", 0i";
    std::string text = "fn NAME(image: " + form.texture + ", place: " + whole +
                       layer(form, ", layer: u32") + ", level: u32" +
                       (form.compares ? ", reference: f32" : "") + ") -> " + form.texel + " {\n";
    text += "    let size = " + whole + "(textureDimensions(image, level));\n";
    text += "    let at = " + whole + "(" + at + ");\n";
    const std::string loaded = "textureLoad(image, at" +
                               layer(form, ", min(layer, textureNumLayers(image) - 1u)") +
                               ", level)";
    const std::string found =
        inside.empty() ? loaded
                       : "select(" + borderText(form) + ", " + loaded + ", " + inside + ")";
    if (form.compares)
        text += "    let depth = " + found + ";\n    return " + compared(form, "depth") + ";\n}\n";
    else
        text += "    return " + found + ";\n}\n";
    return body.function("texelAt", text);
}

std::string texelSample(Body& body, const SampleForm& form) {
    const std::string texel = texelFunction(body, form);
    const std::string real = lanesOf(form.shape->lanes(), 'f');
    const std::string whole = lanesOf(form.shape->lanes(), 'i');
    const bool isLinear = form.compares && form.state.mag == SamplerFilter::linear;
    std::string text = head(form, false, true) + form.texel + " {\n" + sizeText(form, true);
    if (isLinear)
        text += "    let corner = at * size - 0.5f;\n";
    text += "    let first = " + whole + (isLinear ? "(floor(corner))" : "(floor(at * size))") +
            (form.offset.empty() ? "" : " + " + form.offset) + ";\n";
    const auto loaded = [&](const std::string& place) {
        return texel + "(image, " + place + layer(form, ", layer") + ", u32(level)" +
               (form.compares ? ", reference)" : ")");
    };
    if (!isLinear)
        return body.function("sampleTexels", text + "    return " + loaded("first") + ";\n}\n");
    text += "    let part = corner - floor(corner);\n";
    text += "    let upper = mix(" + loaded("first") + ", " + loaded("first + vec2i(1, 0)") +
            ", part.x);\n";
    text += "    let lower = mix(" + loaded("first + vec2i(0, 1)") + ", " +
            loaded("first + vec2i(1, 1)") + ", part.x);\n";
    return body.function("sampleTexels", text + "    return mix(upper, lower, part.y);\n}\n");
}

// Vulkan 1.3, 16.5.7: without anisotropy, from the longer of the two changes. The least number
// keeps the logarithm of places that do not change finite.
std::string levelFunction(Body& body, unsigned lanes) {
    const std::string type = lanesOf(lanes, 'f');
    return body.function("levelOfDetail",
                         "fn NAME(across: " + type + ", down: " + type +
                             ") -> f32 {\n"
                             "    let longest = max(dot(across, across), dot(down, down));\n"
                             "    return 0.5f * log2(max(longest, 1e-37f));\n}\n");
}

static constexpr std::string_view cubeAxes =
    "    let lengths = abs(direction);\n"
    "    let isZ = lengths.z >= max(lengths.x, lengths.y);\n"
    "    let isY = !isZ & (lengths.y >= lengths.x);\n";

std::string cubeChangeFunction(Body& body) {
    return body.function(
        "changeOnFace",
        "fn NAME(direction: vec3f, change: vec3f) -> vec3f {\n" + std::string(cubeAxes) +
            "    let x = vec3f(1.0f, 0.0f, 0.0f);\n"
            "    let axis = select(select(x, x.yxz, isY), x.zyx, isZ);\n"
            "    let along = dot(direction, axis);\n"
            "    return (change - direction * (dot(change, axis) / along)) / (2.0f * abs(along));\n"
            "}\n");
}

// Vulkan 1.3, 16.5.4 "Cube Map Face Selection".
std::string cubeFaceFunction(Body& body) {
    return body.function(
        "placeOnFace",
        "fn NAME(direction: vec3f) -> vec3f {\n" + std::string(cubeAxes) +
            "    let along = select(select(direction.x, direction.y, isY), direction.z, isZ);\n"
            "    let turn = select(-1.0f, 1.0f, along >= 0.0f);\n"
            "    let onX = vec2f(-direction.z * turn, -direction.y);\n"
            "    let onY = vec2f(direction.x, direction.z * turn);\n"
            "    let onZ = vec2f(direction.x * turn, -direction.y);\n"
            "    let place = select(select(onX, onY, isY), onZ, isZ);\n"
            "    let face = select(select(0.0f, 2.0f, isY), 4.0f, isZ) + select(1.0f, 0.0f, along "
            ">= 0.0f);\n"
            "    return vec3f(place / abs(along) * 0.5f + 0.5f, face);\n}\n");
}

} // namespace tarnwick::msl::wgsl
