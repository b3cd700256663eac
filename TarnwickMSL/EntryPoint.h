// The compiler's output: a SPIR-V module for each entry point, and the resources that it binds.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace tarnwick::msl {

enum class Stage : std::uint8_t { vertex, fragment, kernel, object, mesh };

// Whether the functions of the stage run in threadgroups.
constexpr bool hasThreadgroups(Stage stage) {
    return stage == Stage::kernel || stage == Stage::object || stage == Stage::mesh;
}
// The binding of the function's first resource; the stages of a pipeline share one descriptor set.
constexpr std::uint32_t firstBinding(Stage stage) {
    return stage == Stage::fragment ? 32 : stage == Stage::object ? 64 : 0;
}

// The kind of patch that a post-tessellation vertex function takes; none: not such a function.
enum class PatchKind : std::uint8_t { none, triangle, quad };

// The types of numbers. Values that pass into or out of a stage have at most 32 bits.
enum class Scalar : std::uint8_t {
    bool_,
    int8,
    uint8,
    int16,
    uint16,
    int32,
    uint32,
    half,
    float_,
    int64,
    uint64
};

enum class ResourceKind : std::uint8_t {
    uniformBuffer,         // a `constant` argument
    storageBuffer,         // a `device` argument
    sampledTexture,        // a texture argument with access::sample or access::read
    storageTexture,        // a texture argument with access::write or access::read_write
    sampler,               // a sampler argument
    constantSampler,       // a constexpr sampler of the program; `samplerState` is its state
    colorInput,            // the colour so far at the pixel, of the colour attachment `index`
    accelerationStructure, // an acceleration structure, with the index of buffer(n)
    loopReport,      // one 32-bit word: set to 1 by an invocation that ran out of its loop budget
    bufferAddresses, // `size` / 8 addresses of 64 bits: of the buffers with the indices from 0 on
    gridSize,        // of WGSL: a uniform buffer with the members of GridMember, `size` bytes
    viewportSize // of WGSL: a uniform buffer with the viewport's width and height in pixels, two
                 // floats; of a vertex function that writes a point's size
};

enum class TextureShape : std::uint8_t {
    none,
    buffer,
    d1,
    d1Array,
    d2,
    d2Array,
    d2Multisample,
    d2MultisampleArray,
    d3,
    cube,
    cubeArray
};

// `ulong_`: of atomic operations of 64 bits alone.
enum class TextureComponent : std::uint8_t { none, float_, int_, uint_, ulong_ };

// The sizes of a stage's tables: an argument's index is in [0, size). Members of argument buffers
// have the indices from mostSamplers and from the numbers below on.
inline constexpr std::uint32_t mostTextures = 128, mostSamplers = 16, mostBuffers = 31;
inline constexpr std::uint32_t firstMemberTexture = 1u << 16, firstMemberBuffer = 64;

// One resource of an entry point, at `binding` of descriptor set 0. The bindings count up from
// firstBinding.
struct Resource {
    ResourceKind kind = ResourceKind::uniformBuffer;
    std::uint32_t index = 0;   // the argument's own index: buffer(n), texture(n), sampler(n)
    std::uint32_t binding = 0; // Vulkan's binding in descriptor set 0
    std::uint32_t size = 0;    // bytes of the pointee that the shader may read; 0 if unsized
    bool isWritten = false;    // the entry point stores through it
    TextureShape shape = TextureShape::none;
    TextureComponent component = TextureComponent::none;
    bool isDepth = false;      // a depth texture, which may be compared with
    std::uint32_t level = 0;   // storageTexture: the one level that is visible
    bool isAtomic = false;     // storageTexture: has atomic operations, on texels of one component
    bool countsLevels = false; // sampledTexture: only its levels are counted
    std::uint64_t samplerState = 0; // see SamplerBits.h; for an argument: only bit `compares`
    std::string format;             // storageTexture of WGSL: its texel format, as WGSL spells it

    bool operator==(const Resource&) const = default;
};

// One [[attribute(index)]] that the entry point reads from the buffers of a vertex descriptor.
struct StageAttribute {
    std::string name;        // the member's
    std::uint32_t index = 0; // [0, 30]
    Scalar scalar = Scalar::float_;
    std::uint32_t width = 1;       // components, [1, 4]
    bool isOfControlPoint = false; // of a patch_control_point
    // 0 in vertex functions: it is the input vec4, ivec4 or uvec4 at location `index`. In kernels
    // and post-tessellation vertex functions: the id of the function that gives the value, from the
    // number of a control point: vec4 or uvec4 f(uint). Its body in the module returns zero; a
    // pipeline replaces it.
    std::uint32_t fetch = 0;

    bool operator==(const StageAttribute&) const = default;
};

// A member of an argument buffer, a record whose textures, samplers and pointers the host sets
// (Metal Shading Language 3.1, 2.13). The record holds 64 bits for a sampler and the address of a
// buffer, 32 for a texture. If the entry point uses the member, it is a resource of its own.
// Members of further records are listed if the entry point uses one of them.
enum class MemberKind : std::uint8_t { constants, buffer, texture, sampler };

struct ArgumentMember {
    MemberKind kind = MemberKind::constants;
    std::uint32_t buffer = 0; // the index of the argument buffer
    std::uint32_t id = 0;     // n of [[id(n)]]
    std::uint32_t offset = 0; // bytes from the start of the buffer's first record
    std::uint32_t bytes = 0;  // of the member in the record
    std::uint32_t index = 0;  // of its resource; not of constants
    std::uint32_t stride = 0; // bytes from one record of the buffer to the next

    bool operator==(const ArgumentMember&) const = default;
};

// Specialisation constants of the modules. A module declares those that it uses.
inline constexpr std::uint32_t loopBudgetConstant = 0; // uint: iterations before an invocation ends
inline constexpr std::array<std::uint32_t, 3> threadgroupSizeConstants{1, 2, 3}; // kernels
inline constexpr std::uint32_t viewCountConstant = 4;   // uint: views of a render pass
inline constexpr std::uint32_t sampleCountConstant = 5; // uint: samples of a pixel
// bool, of WGSL: whether a vertex function with [[point_size]] draws points. A point of WebGPU has
// one pixel. So a host draws six vertices of a triangle list for each point, and the function moves
// them to the corners of a square; vertex_id is a sixth of the index. Default: true.
inline constexpr std::uint32_t drawsPointsConstant = 6;
// The location of [[point_coord]] in WGSL.
inline constexpr std::uint32_t pointCoordinateLocation = 15;

// uint: bytes of the threadgroup memory that the kernel's argument [[threadgroup(index)]] points
// to.
constexpr std::uint32_t threadgroupLengthConstant(std::uint32_t index) {
    return 16 + index;
}

// The push constants of a kernel: a record with three members of type uint3.
enum class GridMember : std::uint32_t {
    size,            // at byte 0: the exact size of the dispatched grid in threads
    originOfStageIn, // at byte 16: the element of stage_in that the first thread reads
    sizeOfStageIn    // at byte 32: the maximum size of the grid that reads stage_in
};
inline constexpr std::uint32_t kernelPushConstantBytes = 44;

// A function constant (Metal Shading Language 3.1, 5.8) that a module reads. Its components, and
// whether it has a value, are specialisation constants.
struct FunctionConstant {
    std::string name;
    std::uint32_t index = 0;
    Scalar scalar = Scalar::bool_;
    std::uint32_t width = 1; // components, [1, 4]
    bool isRequired = false; // the module reads the value and does not ask whether there is one

    bool operator==(const FunctionConstant&) const = default;
};

// The specialisation constant of a component, which has the type of the component.
constexpr std::uint32_t functionConstantComponent(std::uint32_t index, std::uint32_t component) {
    return 256 + 8 * index + component;
}
// bool: whether the function constant has a value.
constexpr std::uint32_t functionConstantPresence(std::uint32_t index) {
    return 256 + 8 * index + 4;
}

// An override constant of a WGSL text. Its number is that of the specialisation constant with the
// same meaning. A pipeline may set those that the text declares, and no others.
struct Override {
    std::uint32_t id = 0;
    std::string name;
    Scalar scalar = Scalar::uint32; // bool_, int32, uint32 or float_

    bool operator==(const Override&) const = default;
};

struct EntryPoint {
    std::string name; // as the source spells it; the module's own entry point is named "main"
    Stage stage = Stage::fragment;
    std::vector<std::uint32_t> words; // SPIR-V 1.6 for Vulkan 1.3; empty for WGSL
    std::string text;                 // WGSL; empty for SPIR-V
    std::vector<Resource> resources;  // by binding, ascending
    bool usesLoopBudget = false;      // some loop has no bound that the compiler can prove
    // The fragment function uses Vulkan's standard sample positions (standardSampleLocations).
    bool needsStandardSamples = false;
    bool needsEightLanes = false;       // in each SIMD-group, for its matrices
    bool writesPointSize = false;       // a vertex function with [[point_size]]
    std::uint32_t colorAttachments = 0; // a fragment function's written colours, bit n for color(n)
    std::uint32_t threadgroupBytes = 0; // threadgroup memory that the kernel declares
    std::vector<std::uint32_t>
        threadgroupPointers;       // indices of the arguments whose length the host sets
    std::uint32_t mostThreads = 0; // max_total_threads_per_threadgroup(n); 0: not specified
    std::vector<StageAttribute> attributes; // by index, ascending
    // A post-tessellation vertex function has Stage::vertex and is a tessellation evaluation shader
    // in Vulkan. It has an input at location 0 that is the same for the whole patch:
    // uvec4(patch_id, instance_id, base_instance, number of control points).
    PatchKind patch = PatchKind::none;
    std::uint32_t controlPoints = 0; // as patch(kind, n) says; 0: not specified
    // Those without a value that the module reads, by index, ascending; all of the program if
    // isShapedByConstants.
    std::vector<FunctionConstant> constants;
    // Some argument, input or output exists only for some values of function constants. Compiled
    // without the values, it always exists.
    bool isShapedByConstants = false;
    bool storesByAddress = false;        // through pointers that are no argument of the function
    std::vector<ArgumentMember> members; // of all argument buffers
    // Of WGSL. All resources are in group 0.
    std::vector<Override> overrides;   // by number, ascending
    std::vector<std::string> features; // of WebGPU that the device must have: "subgroups"

    bool operator==(const EntryPoint&) const = default;
};

} // namespace tarnwick::msl
