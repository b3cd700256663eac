// The attributes that a function reads from buffers.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"
#include "TarnwickMSL/Translation/Spirv/Body.h"

#include <map>

namespace tarnwick::msl::spirv {

// In vertex functions they are inputs. Kernels and post-tessellation vertex functions have no such
// inputs in Vulkan, and the formats are known only when a pipeline is made. So each attribute is a
// function that returns zero, whose body the pipeline replaces (EntryPoint.h).
class Fetches {
  public:
    Fetches(Body& body, const ShaderModule& shader) : body_(body), shader_(shader) {}

    // Writes a call of msl.attribute(index, point).
    Id write(const llvm::CallInst& call);
    // The attributes that the code reads, by index.
    std::vector<StageAttribute> used() const;

  private:
    bool haveInputs() const {
        return shader_.stage == Stage::vertex && shader_.patch == PatchKind::none;
    }
    bool isSigned(std::uint32_t index) const;
    Id input(std::uint32_t index, Id type);
    Id function(std::uint32_t index, llvm::Type* result);

    Body& body_;
    const ShaderModule& shader_;
    std::map<std::uint32_t, Id> made_; // the variables or functions, by index
};

} // namespace tarnwick::msl::spirv
