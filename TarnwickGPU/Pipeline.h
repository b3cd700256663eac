// Libraries, functions and pipeline states. Device/Library.cpp implements the first two;
// Commands/PipelineParts.h names the sources of the pipeline states.
#pragma once

#include "TarnwickGPU/Format.h"
#include "TarnwickGPU/FunctionConstants.h"
#include "TarnwickGPU/VertexDescriptor.h"
#include "TarnwickMSL/EntryPoint.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::msl {
struct CompileOptions;
} // namespace tarnwick::msl

namespace tarnwick::gpu {

class ArgumentEncoder;
struct DeviceState;
struct RenderPipelineParts; // the Vulkan sides, in Commands/PipelineParts.h
struct ComputePipelineParts;

// One entry point of a library. Shares its module with the library, which it may outlive.
class Function {
  public:
    explicit Function(std::shared_ptr<const msl::EntryPoint> entryPoint);
    const std::string& name() const;
    msl::Stage stage() const;
    // Those without a value. Pipelines require a value for each that is required.
    const std::vector<msl::FunctionConstant>& functionConstants() const {
        return entryPoint_->constants;
    }
    // For the argument buffer at [[buffer(index)]]; null if the function has none there.
    std::unique_ptr<ArgumentEncoder> newArgumentEncoder(std::uint32_t index) const;
    const msl::EntryPoint& entryPoint() const { return *entryPoint_; }
    const std::shared_ptr<const msl::EntryPoint>& sharedEntryPoint() const { return entryPoint_; }

  private:
    std::shared_ptr<const msl::EntryPoint> entryPoint_;
};

class Library {
  public:
    Library(std::vector<msl::EntryPoint> entryPoints, std::string warnings);
    ~Library();

    // Null when the library has no function of that name.
    std::unique_ptr<Function> newFunction(std::string_view name) const;
    // The function with values for its function constants. A function whose arguments exist only
    // for some values is compiled with them; any other becomes a module with these constants. Other
    // constants remain undefined. Throws LibraryError: a required value is missing, a value has
    // another type than its constant, or the compiler rejects the program with the values.
    std::unique_ptr<Function> newFunction(std::string_view name,
                                          const FunctionConstantValues& values) const;
    std::vector<std::string> functionNames() const;
    // The compiler's warnings as text; often empty.
    const std::string& warnings() const { return warnings_; }

  private:
    friend std::unique_ptr<Library> newLibrary(std::string_view source,
                                               const msl::CompileOptions& options);
    struct Source;
    std::shared_ptr<const msl::EntryPoint> find(std::string_view name) const;

    std::vector<std::shared_ptr<const msl::EntryPoint>> entryPoints_;
    std::string warnings_;
    // The program, if a function has to be compiled with its constants.
    std::unique_ptr<const Source> source_;
};

// The sentence about a required constant without a value.
std::string missingValue(const msl::EntryPoint& function, const msl::FunctionConstant& constant);

// source1: the fragment function's result `[[color(0), index(1)]]`. blendColor: the encoder's
// setBlendColor().
enum class BlendFactor : std::uint8_t {
    zero,
    one,
    sourceColor,
    oneMinusSourceColor,
    sourceAlpha,
    oneMinusSourceAlpha,
    destinationColor,
    oneMinusDestinationColor,
    destinationAlpha,
    oneMinusDestinationAlpha,
    sourceAlphaSaturated,
    blendColor,
    oneMinusBlendColor,
    blendAlpha,
    oneMinusBlendAlpha,
    source1Color,
    oneMinusSource1Color,
    source1Alpha,
    oneMinusSource1Alpha
};
enum class BlendOperation : std::uint8_t { add, subtract, reverseSubtract, min, max };

struct ColorWriteMask {
    bool red = true, green = true, blue = true, alpha = true;

    bool operator==(const ColorWriteMask&) const = default;
};

enum class TopologyClass : std::uint8_t { triangle, point };

// How a factor divides an edge (Metal Shading Language 3.1, 5.1.1; Vulkan 1.3, 23.2). Factors are
// rounded up to powers of two or to whole numbers, or divide into fractional segments.
enum class TessellationPartitionMode : std::uint8_t {
    pow2,
    integer,
    fractionalOdd,
    fractionalEven
};
enum class Winding : std::uint8_t { clockwise, counterClockwise };
// Which factors of the buffer a patch takes: the first, those of the patch counted in the draw, of
// the instance, or of both.
enum class TessellationFactorStepFunction : std::uint8_t {
    constant,
    perPatch,
    perInstance,
    perPatchAndPerInstance
};

// Of a pipeline whose vertex function takes patches.
struct TessellationDescriptor {
    TessellationPartitionMode partitionMode = TessellationPartitionMode::pow2;
    Winding outputWindingOrder = Winding::clockwise;
    std::uint32_t maxFactor = 16; // [1, 64]; greater factors become this
    bool scalesFactors = false;   // by setTessellationFactorScale()
    TessellationFactorStepFunction factorStepFunction = TessellationFactorStepFunction::constant;
    std::optional<IndexType> controlPointIndices; // of drawIndexedPatches()

    bool operator==(const TessellationDescriptor&) const = default;
};

struct ColorAttachmentDescriptor {
    PixelFormat format = PixelFormat::invalid;
    bool blends = false; // false: the colour replaces the target's
    BlendOperation rgbOperation = BlendOperation::add, alphaOperation = BlendOperation::add;
    BlendFactor sourceRGB = BlendFactor::one, destinationRGB = BlendFactor::zero;
    BlendFactor sourceAlpha = BlendFactor::one, destinationAlpha = BlendFactor::zero;
    ColorWriteMask writeMask;

    bool operator==(const ColorAttachmentDescriptor&) const = default;
};

struct RenderPipelineDescriptor {
    const Function* vertex = nullptr; // borrowed during the call that makes the pipeline
    const Function* fragment = nullptr;
    // Of a vertex function with [[stage_in]]; borrowed like the functions.
    const VertexDescriptor* vertexDescriptor = nullptr;
    TessellationDescriptor tessellation; // of a post-tessellation vertex function
    ColorAttachmentDescriptor color;     // colour attachment 0
    std::array<ColorAttachmentDescriptor, mostColors - 1> otherColors; // colour attachments 1 to 7
    PixelFormat depthFormat = PixelFormat::invalid; // invalid: no depth attachment
    std::uint32_t sampleCount = 1;                  // 1 or 4
    TopologyClass topology = TopologyClass::triangle;

    const ColorAttachmentDescriptor& colorAt(std::size_t n) const { // n in [0, mostColors)
        return n == 0 ? color : otherColors[n - 1];
    }
};

class RenderPipelineState {
  public:
    explicit RenderPipelineState(std::unique_ptr<RenderPipelineParts> parts);
    ~RenderPipelineState();
    const RenderPipelineParts& parts() const { return *parts_; }

  private:
    std::unique_ptr<RenderPipelineParts> parts_;
};

class ComputePipelineState {
  public:
    explicit ComputePipelineState(std::unique_ptr<ComputePipelineParts> parts);
    ~ComputePipelineState();
    // The maximum number of threads in one threadgroup.
    std::uint32_t maxTotalThreadsPerThreadgroup() const;
    const ComputePipelineParts& parts() const { return *parts_; }

  private:
    std::unique_ptr<ComputePipelineParts> parts_;
};

enum class CompareFunction : std::uint8_t {
    never,
    less,
    equal,
    lessEqual,
    greater,
    notEqual,
    greaterEqual,
    always
};

struct DepthStencilDescriptor {
    CompareFunction depthCompare = CompareFunction::always; // of the new depth to the stored one
    bool depthWrites = false;

    bool operator==(const DepthStencilDescriptor&) const = default;
};

class DepthStencilState {
  public:
    explicit DepthStencilState(const DepthStencilDescriptor& descriptor)
        : descriptor_(descriptor) {}
    const DepthStencilDescriptor& descriptor() const { return descriptor_; }

  private:
    DepthStencilDescriptor descriptor_;
};

} // namespace tarnwick::gpu
