// A stage's inputs and outputs: locations and built-ins.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"
#include "TarnwickMSL/Translation/Spirv/Body.h"

#include <array>
#include <functional>

namespace tarnwick::msl::spirv {

// A variable of the Input or Output class.
struct StageVariable {
    Id id = 0;
    llvm::Type* type = nullptr; // what it holds: a value, or an array of them
};

// Throws TranslationError on a built-in that this stage does not have.
StageVariable declareStageVariable(Body& body, Stage stage, const InterfaceVariable& interface,
                                   llvm::Type* type);

// Whether Vulkan has the built-in in another form than Metal.
bool isComputedBuiltIn(llvm::StringRef word);

// Such a built-in's value, worked out where it is read. `gridSize` gives the exact grid, where it
// is needed.
Id computedBuiltIn(Body& body, llvm::StringRef word, const std::function<Id()>& gridSize);

// The variable of a built-in that is an input of one value, loaded.
Id readBuiltIn(Body& body, spv::BuiltIn builtIn, llvm::Type* type);

// The threadgroup's size as the pipeline was specialised.
std::array<Id, 3> threadgroupSize(Body& body);

} // namespace tarnwick::msl::spirv
