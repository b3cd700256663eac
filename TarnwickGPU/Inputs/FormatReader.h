// SPIR-V that reads a vertex format from a buffer, for functions whose attributes the device does
// not read itself. The values are those of Vulkan's conversions (Vulkan 1.3, 3.9 and 22.3).
#pragma once

#include "TarnwickGPU/Vulkan/VertexFormats.h"
#include "TarnwickSpirv/FunctionBody.h"

namespace tarnwick::gpu {

class FormatReader {
  public:
    // `words` is the variable of a storage buffer of 32-bit words.
    FormatReader(spirv::FunctionBody& body, spirv::Id words);

    // The four components at a byte of the buffer, which is a multiple of 4, as a vec4; for formats
    // of integers as a uvec4. Components that the format does not have are 0, 0, 0, 1.
    spirv::Id read(const VertexFormatRow& format, spirv::Id byte);

  private:
    spirv::Id wordAt(spirv::Id byte);
    spirv::Id bitsAt(const VertexFormatRow& format, spirv::Id byte, std::uint32_t component);
    spirv::Id bitsIn(const VertexFormatRow& format, spirv::Id word, std::uint32_t first,
                     std::uint32_t count);
    spirv::Id number(const VertexFormatRow& format, spirv::Id bits, std::uint32_t count);
    spirv::Id half(spirv::Id bits);
    spirv::Id component(const VertexFormatRow& format, spirv::Id byte, std::uint32_t component);
    spirv::Id smallFloat(spirv::Id word, std::uint32_t component);
    spirv::Id scaledFloat(spirv::Id word, std::uint32_t component);
    spirv::Id constant(std::uint32_t value) { return body_.module.constant(word_, value); }

    spirv::FunctionBody& body_;
    spirv::Id words_;
    spirv::Id word_, number_; // types
};

} // namespace tarnwick::gpu
