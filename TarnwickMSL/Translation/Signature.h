// An entry point's arguments and results, as the front end reads them from the declarations.
#pragma once

#include "TarnwickMSL/EntryPoint.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tarnwick::msl {

enum class Interpolation : std::uint8_t {
    centerPerspective,
    centerNoPerspective,
    centroidPerspective,
    centroidNoPerspective,
    samplePerspective,
    sampleNoPerspective,
    flat
};
constexpr bool isPerspective(Interpolation interpolation) {
    return interpolation == Interpolation::centerPerspective ||
           interpolation == Interpolation::centroidPerspective ||
           interpolation == Interpolation::samplePerspective;
}

// Whether an argument or a value exists, by its [[function_constant(condition)]] (Metal Shading
// Language 3.1, 5.8). `open`: the condition depends on a function constant without a value; the
// module then has the argument.
enum class Presence : std::uint8_t { yes, no, open };

// One value that passes between stages: a member of a stage_in or result record, or a plain
// argument or result with a built-in attribute.
struct StageValue {
    std::string name;        // the member's name, or the user(...) attribute's; links the stages
    std::string attribute;   // Metal's word: "position", "point_size", "vertex_id", "color", ... or
                             // "" for a plain interpolated member
    std::uint32_t index = 0; // of color(n), attribute(n), clip_distance's length, ...
    std::uint32_t source = 0; // index(n) of a colour: 1 is the second source of blending
    Interpolation interpolation = Interpolation::centerPerspective;
    std::uint64_t offset = 0; // bytes from the start of the record
    Scalar scalar = Scalar::float_;
    std::uint32_t width = 1;       // components, [1, 4]
    bool isOfControlPoint = false; // a member of the T of a patch_control_point<T>, of which
                                   // `offset` is counted
    // An interpolant<T, interpolation>: the record has the address of the input, not its value.
    bool isInterpolant = false;
    bool isOfPrimitive = false; // a mesh function's result that is the same for a whole primitive
    Presence presence = Presence::yes;
};

enum class ArgumentKind : std::uint8_t {
    buffer,
    texture,
    sampler,
    threadgroup,
    stageIn,
    builtIn,
    accelerationStructure,
    payload,  // the object_data that an object function passes to the mesh functions it starts
    meshGrid, // mesh_grid_properties
    mesh      // the results of a mesh function
};

// The maximum of a payload, of every device with VK_EXT_mesh_shader.
inline constexpr std::uint64_t mostPayloadBytes = 16384;

// The primitives of a mesh; none: of another function.
enum class Topology : std::uint8_t { none = 0, point = 1, line = 2, triangle = 3 };
enum class AddressSpace : std::uint8_t { constant, device, threadgroup };

// One argument of an entry point, in the order of its LLVM function's own arguments (without a
// hidden result pointer).
struct Argument {
    ArgumentKind kind = ArgumentKind::buffer;
    std::string name;        // as the source spells it
    std::uint32_t index = 0; // n of buffer(n), texture(n), sampler(n), threadgroup(n)

    // buffer, threadgroup, payload: the pointee
    AddressSpace space = AddressSpace::constant;
    bool isReference = false;       // exactly one element; a pointer has as many as are bound
    std::uint64_t elementBytes = 0; // sizeof the pointee
    std::uint64_t elementAlign = 0;
    std::string
        elementType; // the name or text of the pointee's LLVM type, a hint for typed access;
                     // "" if it is not needed

    bool hasRasterOrder = false; // buffers and textures: raster_order_group(n)
    bool isCoherent = false;     // buffers: coherent; textures: memory_coherence_device

    // texture
    TextureShape shape = TextureShape::none;
    TextureComponent component = TextureComponent::none;
    bool isDepth = false;
    bool isRead = false, isWritten = false; // by the type's access qualifier
    std::uint32_t count = 1;                // array<texture or sampler, count>

    // stageIn: its members; builtIn: one value
    std::vector<StageValue> values;

    Presence presence = Presence::yes;

    // buffer: the textures, samplers and pointers of an argument buffer, each with the byte that it
    // has in the record and its [[id(n)]]. One that is no resource has the kind builtIn.
    std::vector<Argument> members;
    std::uint32_t offset = 0, id = 0;
};

// A function constant without a value: a global of the module that nothing defines.
struct ConstantSignature {
    std::string name;
    std::string symbol;
    std::uint32_t index = 0;
    Scalar scalar = Scalar::bool_;
    std::uint32_t width = 1; // components, [1, 4]
};

struct EntrySignature {
    std::string name;   // as the source spells it
    std::string symbol; // of its function in the LLVM module
    std::string place;  // "file:line:column" of its name, for messages about the whole of it
    Stage stage = Stage::fragment;
    std::vector<Argument> arguments;
    // Members of the result record, or the one plain result; of a mesh, the values of its vertices
    // and primitives.
    std::vector<StageValue> results;
    bool resultIsRecord = false;
    bool earlyFragmentTests = false;
    bool coversAfterDepth = false;      // [[sample_mask, post_depth_coverage]]
    std::uint32_t mostThreads = 0;      // max_total_threads_per_threadgroup's; 0: not specified
    PatchKind patch = PatchKind::none;  // of a post-tessellation vertex function
    std::uint32_t controlPoints = 0;    // patch(kind, n)'s n; 0: not specified
    Topology topology = Topology::none; // of the mesh that a mesh function makes
    std::uint32_t mostVertices = 0, mostPrimitives = 0;
};

} // namespace tarnwick::msl
