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
    llvm::Type* type = nullptr; // of the value, or an array of values
};

// Throws TranslationError on a built-in that this stage does not have.
StageVariable declareStageVariable(Body& body, Stage stage, const InterfaceVariable& interface,
                                   llvm::Type* type);

// Whether Vulkan has the built-in in another form than Metal.
bool isComputedBuiltIn(llvm::StringRef word);

// The value of such a built-in, computed at the place of the read. `gridSize` gives the exact grid;
// it is called only for the values that need it.
Id computedBuiltIn(Body& body, llvm::StringRef word, const std::function<Id()>& gridSize);

// Loads a built-in input of one value.
Id readBuiltIn(Body& body, spv::BuiltIn builtIn, llvm::Type* type);

// The threadgroup's size, as specialisation constants.
std::array<Id, 3> threadgroupSize(Body& body);

} // namespace tarnwick::msl::spirv
