#include "TarnwickMSL/Translation/Wgsl/Stage.h"

#include "TarnwickMSL/DrawBases.h"
#include "TarnwickMSL/Translation/TranslationError.h"

#include <array>

namespace tarnwick::msl::wgsl {

using namespace llvm;

namespace {

// A built-in value of Metal, by WGSL's word, and the extension that has it.
struct BuiltIn {
    std::string_view word, given;
    std::string_view extension = {};
};

} // namespace

// clang-format off
static constexpr std::array builtIns{
    BuiltIn{"vertex_id",                      "vertex_index"},
    BuiltIn{"instance_id",                    "instance_index"},
    BuiltIn{"position",                       "position"},
    BuiltIn{"clip_distance",                  "clip_distances", "clip_distances"},
    BuiltIn{"primitive_id",                   "primitive_index", "primitive_index"},
    BuiltIn{"sample_id",                      "sample_index"},
    BuiltIn{"sample_mask",                    "sample_mask"},
    BuiltIn{"depth",                          "frag_depth"},
    BuiltIn{"thread_position_in_grid",        "global_invocation_id"},
    BuiltIn{"thread_position_in_threadgroup", "local_invocation_id"},
    BuiltIn{"threadgroup_position_in_grid",   "workgroup_id"},
    BuiltIn{"threadgroups_per_grid",          "num_workgroups"},
    BuiltIn{"thread_index_in_simdgroup",      "subgroup_invocation_id", "subgroups"},
    BuiltIn{"simdgroup_index_in_threadgroup", "subgroup_id", "subgroups"},
    BuiltIn{"threads_per_simdgroup",          "subgroup_size", "subgroups"},
    BuiltIn{"simdgroups_per_threadgroup",     "num_subgroups", "subgroups"},
};
// clang-format on

static StageValue builtIn(Body& body, const InterfaceVariable& interface, Type* type) {
    for (const BuiltIn& known : builtIns) {
        if (known.word != interface.builtIn)
            continue;
        if (known.word == "clip_distance" && interface.kind == InterfaceKind::input)
            throw TranslationError("WGSL has no [[clip_distance]] in fragment functions.");
        if (!known.extension.empty())
            body.require(known.extension);
        const bool isScalar = type->isFloatTy();
        if (isScalar && known.word == "clip_distance")
            type = ArrayType::get(type, 1);
        const std::string declared = body.type(type);
        if (interface.kind == InterfaceKind::input)
            return {body.builtIn(known.given, declared).text};
        body.addOutput("@builtin(" + std::string(known.given) + ") " + std::string(known.given) +
                       ": " + declared);
        const std::string element = type->isArrayTy() && isScalar ? "[0]" : "";
        return {body.outputName() + "." + std::string(known.given) + element};
    }
    throw TranslationError("WGSL has no [[" + interface.builtIn + "]].");
}

static std::string_view sampling(Interpolation interpolation) {
    switch (interpolation) {
    case Interpolation::centerPerspective:
        return "";
    case Interpolation::centerNoPerspective:
        return " @interpolate(linear)";
    case Interpolation::centroidPerspective:
        return " @interpolate(perspective, centroid)";
    case Interpolation::centroidNoPerspective:
        return " @interpolate(linear, centroid)";
    case Interpolation::samplePerspective:
        return " @interpolate(perspective, sample)";
    case Interpolation::sampleNoPerspective:
        return " @interpolate(linear, sample)";
    case Interpolation::flat:
        return " @interpolate(flat)";
    }
    return "";
}

// The name of a global is "msl.in.uv" or "msl.out.color.0".
static std::string nameOf(const InterfaceVariable& interface) {
    const StringRef name = interface.global;
    const StringRef rest = name.substr(name.find('.', 4) + 1);
    std::string words = rest.str();
    std::ranges::replace(words, '.', '_');
    return words;
}

// The names of the variables of a point.
static constexpr std::string_view pointSize = "pointSize", viewport = "viewport",
                                  drawsPoints = "drawsPoints", pointCoordinate = "point_coord";

std::string declarePoint(Body& body, std::uint32_t binding) {
    for (std::string_view name : {pointSize, viewport})
        body.names.make(name);
    body.declare("@group(0) @binding(" + std::to_string(binding) + ") var<uniform> " +
                 std::string(viewport) + ": vec2f;\n");
    body.overridden(drawsPointsConstant, drawsPoints, "bool", "true");
    body.addOutput("@location(" + std::to_string(pointCoordinateLocation) + ") " +
                   std::string(pointCoordinate) + ": vec2f");
    body.line("var " + std::string(pointSize) + ": f32;");
    return std::string(pointSize);
}

// Metal counts the coordinates in a point from the upper left. The corners of the two triangles are
// the bits of two numbers.
void placePoint(Body& body) {
    const std::string out = body.outputName(),
                      coordinate = out + "." + std::string(pointCoordinate);
    const std::string corner = body.builtIn("vertex_index", "u32").text + " % 6u";
    body.open("if (" + std::string(drawsPoints) + ") {");
    body.line(coordinate + " = vec2f(f32((0x32u >> (" + corner + ")) & 1u), f32((0x2cu >> (" +
              corner + ")) & 1u));");
    body.line("let moved = (" + coordinate + " * 2.0f - 1.0f) * vec2f(1.0f, -1.0f) * " +
              std::string(pointSize) + " / " + std::string(viewport) + ";");
    body.line(out + ".position += vec4f(moved * " + out + ".position.w, 0.0f, 0.0f);");
    body.close();
}

// The number of the vertex that six corners of a point share.
static StageValue vertexOfPoint(Body& body) {
    const std::string given = body.builtIn("vertex_index", "u32").text;
    return {"select(" + given + ", " + given + " / 6u, " + std::string(drawsPoints) + ")"};
}

StageValue declareStageValue(Body& body, const InterfaceVariable& interface, Type* type) {
    if (interface.isOfPatch)
        throw TranslationError("WGSL has no tessellation.");
    if (interface.builtIn == "vertex_id" && body.hasOverride(drawsPointsConstant))
        return vertexOfPoint(body);
    if (interface.builtIn == "point_coord") {
        body.addInput("@location(" + std::to_string(pointCoordinateLocation) + ") " +
                      std::string(pointCoordinate) + ": vec2f");
        return {body.inputName() + "." + std::string(pointCoordinate)};
    }
    if (!interface.builtIn.empty())
        return builtIn(body, interface, type);
    const bool isInput = interface.kind == InterfaceKind::input;
    const bool isInteger = type->isIntOrIntVectorTy();
    const bool isColor = !isInput && body.stage == Stage::fragment;
    // Values between the stages are unsigned; a colour has the sign of its target.
    const Sign sign = isColor && interface.scalar == Scalar::int32 ? Sign::yes : Sign::no;
    std::string attributes = "@location(" + std::to_string(interface.location) + ")";
    if (isColor && (interface.source != 0)) {
        body.require("dual_source_blending");
        attributes += " @blend_src(" + std::to_string(interface.source) + ")";
    }
    if (!isColor)
        attributes += sampling(isInteger ? Interpolation::flat : interface.interpolation);
    const std::string name = body.names.make(nameOf(interface));
    const std::string text = attributes + " " + name + ": " + body.type(type, sign);
    isInput ? body.addInput(text) : body.addOutput(text);
    return {(isInput ? body.inputName() : body.outputName()) + "." + name, sign};
}

Expression writeAttribute(Body& body, const CallInst& call) {
    if (body.stage != Stage::vertex || body.shader.patch != PatchKind::none)
        throw TranslationError("WGSL has no attributes of vertex descriptors in a function of this "
                               "kind.");
    const auto index =
        static_cast<std::uint32_t>(cast<ConstantInt>(call.getArgOperand(0))->getZExtValue());
    return body.attribute(index, call.getType());
}

std::string threadgroupSize(Body& body) {
    std::string text;
    for (std::size_t axis = 0; axis < 3; ++axis)
        text +=
            (axis ? ", " : "") + body.overridden(threadgroupSizeConstants[axis],
                                                 std::string("threads") + "XYZ"[axis], "u32", "1u")
                                     .text;
    return text;
}

bool isComputedBuiltIn(StringRef word) {
    return word == "dispatch_threads_per_threadgroup" || word == "threads_per_threadgroup" ||
           word == "thread_index_in_threadgroup" || word == "threads_per_grid" ||
           word == "front_facing" || word == "amplification_count" || word == "amplification_id" ||
           word == "base_vertex" || word == "base_instance";
}

// The size of this threadgroup: smaller at the end of the grid.
static Expression threadsHere(Body& body, const Expression& gridSize) {
    const Expression full{.text = "vec3u(" + threadgroupSize(body) + ")"};
    const Expression group = body.builtIn("workgroup_id", "vec3u");
    return call("min", {full, infix(gridSize, "-", infix(group, "*", full))});
}

static Expression threadIndex(Body& body, const Expression& gridSize) {
    const Expression size = body.named(threadsHere(body, gridSize), "threads");
    const Expression at = body.builtIn("local_invocation_id", "vec3u");
    const Expression plane = infix(member(at, "z"), "*", member(size, "y"));
    const Expression rows = infix(infix(plane, "+", member(at, "y")), "*", member(size, "x"));
    return infix(rows, "+", member(at, "x"));
}

Expression computedBuiltIn(Body& body, StringRef word,
                           const std::function<Expression()>& gridSize) {
    if (word == "dispatch_threads_per_threadgroup")
        return {.text = "vec3u(" + threadgroupSize(body) + ")"};
    if (word == "threads_per_threadgroup")
        return threadsHere(body, gridSize());
    if (word == "thread_index_in_threadgroup")
        return threadIndex(body, gridSize());
    if (word == "threads_per_grid")
        return gridSize();
    if (word == "amplification_count") // a pass of WebGPU has one view
        return body.number(1);
    if (word == "amplification_id")
        return body.number(0);
    if (word == "base_vertex")
        return body.overridden(baseVertexConstant, "baseVertex", "u32", "0u");
    if (word == "base_instance")
        return body.overridden(baseInstanceConstant, "baseInstance", "u32", "0u");
    return call("u32", {body.builtIn("front_facing", "bool")});
}

} // namespace tarnwick::msl::wgsl
