// The form between the passes and the writer: one entry point as a structured `main`. See
// docs/compiler.md for the rules of its LLVM code.
#pragma once

#include "TarnwickMSL/EntryPoint.h"
#include "TarnwickMSL/Translation/Signature.h"

#include <llvm/ADT/DenseMap.h>
#include <llvm/IR/Module.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick::msl {

enum class InterfaceKind : std::uint8_t {
    input,
    output,         // a stage's location or built-in
    uniformBuffer,  // `constant` argument
    storageBuffer,  // `device` argument
    pushConstant,   // the kernel's grid size
    workgroup,      // threadgroup memory
    payload,        // what an object function passes to the mesh functions that it starts
    loopReport,     // storage buffer of one word
    bufferAddresses // uniform buffer: the addresses of all buffers, by index
};

// Whether variables of the kind have a binding.
constexpr bool hasBinding(InterfaceKind kind) {
    return kind == InterfaceKind::uniformBuffer || kind == InterfaceKind::storageBuffer ||
           kind == InterfaceKind::loopReport || kind == InterfaceKind::bufferAddresses;
}

// One external global of the module and its meaning. The module may lack globals that are not used;
// the writer finds globals by name.
struct InterfaceVariable {
    InterfaceKind kind = InterfaceKind::input;
    std::string global;  // the LLVM global's name
    std::string name;    // buffers and threadgroup memory: the argument's, as the source spells it
    std::string builtIn; // input, output: Metal's word ("position", "vertex_id"...); "" = location
    std::uint32_t location = 0;
    bool isOfPatch = false;         // an input that is the same for the whole patch
    bool isOfPrimitive = false;     // an input or output that is the same for a whole primitive
    std::uint32_t source = 0;       // of a colour: 1 is the second source of blending
    Scalar scalar = Scalar::float_; // input, output
    Interpolation interpolation = Interpolation::centerPerspective;
    std::uint32_t index = 0; // Metal's buffer index
    std::uint32_t binding = 0;
    std::uint64_t elementBytes = 0; // buffers: sizeof one element of the pointee
    bool isReference = false;       // buffers: exactly one element
    bool isCoherent = false;        // buffers: other invocations see each store in order
};

// The threadgroup memory of object and mesh functions, arrays of i32: the grid of mesh functions;
// the number of a mesh's primitives; their vertices, as indexCount(topology) for each; whether each
// is culled.
inline constexpr const char* meshGrid = "msl.mesh.grid";
inline constexpr const char* meshCount = "msl.mesh.count";
inline constexpr const char* meshIndices = "msl.mesh.indices";
inline constexpr const char* meshCulled = "msl.mesh.culled";
inline constexpr const char* payloadName = "msl.payload";

// The function that a kernel calls first, with whether the thread is in the grid, if threads outside
// of it run as well.
inline constexpr const char* gridMark = "msl.grid_mark";
// The function that such a kernel calls after a loop, with whether the thread has spent the loop
// budget. From then on the thread changes no memory.
inline constexpr const char* budgetMark = "msl.budget_mark";

// The vertices of a primitive.
constexpr std::uint32_t indexCount(Topology topology) {
    return static_cast<std::uint32_t>(topology);
}

// The handle of a texture argument that is absent (Presence::no).
inline constexpr std::uint32_t absentTexture = ~0u;

// A texture argument; its handle value in the code is `index`.
struct TextureVariable {
    // The Metal texture index; plus mostTextures once for each earlier argument that has the same
    // Metal index because their conditions exclude each other.
    std::uint32_t index = 0;
    std::uint32_t binding = 0;
    TextureShape shape = TextureShape::none;
    TextureComponent component = TextureComponent::none;
    bool isDepth = false;
    bool isRead = false, isWritten = false;
    bool isCoherent = false; // other invocations see each store in order
    std::string name;        // the argument's, as the source spells it
};

// How a block's terminator is structured (SPIR-V 1.6, 2.11).
struct Merge {
    llvm::BasicBlock* merge = nullptr;
    llvm::BasicBlock* continueTarget = nullptr; // a loop's; null for a selection
};
using Structure = llvm::DenseMap<llvm::BasicBlock*, Merge>; // by the block that holds the merge

// The scalar types that the target of a module does not have.
struct TypeLacks {
    bool int8 = false, int16 = false, int64 = false, half = false;

    bool anySmall() const { return int8 || int16 || half; }
    bool any() const { return anySmall() || int64; }
    bool operator==(const TypeLacks&) const = default;
};

struct ShaderModule {
    std::unique_ptr<llvm::Module> module;
    llvm::Function* main = nullptr; // void(), everything inlined into it
    std::string name;               // the entry point's
    Stage stage = Stage::fragment;
    std::vector<InterfaceVariable> interface;
    std::vector<TextureVariable> textures;
    std::vector<std::uint32_t> samplers;      // indices of the sampler arguments
    std::vector<ConstantSignature> constants; // of the program
    std::vector<ArgumentMember> members;      // of argument buffers
    TypeLacks lacks;
    Structure structure;
    bool usesLoopBudget = false;
    bool earlyFragmentTests = false;
    bool coversAfterDepth = false; // the input sample_mask has the samples that pass depth tests
    bool ordersFragments = false;  // those of one pixel run one after the other
    std::uint32_t mostThreads = 0; // in a threadgroup of this kernel; 0: not specified
    PatchKind patch = PatchKind::none;
    std::uint32_t controlPoints = 0;        // 0: not specified
    std::vector<StageAttribute> attributes; // all of the stage_in argument
    bool isShapedByConstants = false;
    Topology topology = Topology::none; // of a mesh function
    std::uint32_t mostVertices = 0, mostPrimitives = 0;
};

} // namespace tarnwick::msl
