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

// Whether the output is a colour of signed integers, whose variable is signed as well: a target's
// numbers and a result's are of one kind (Vulkan 1.3, 29.7). All other integers are unsigned.
bool isSignedColor(Stage stage, const InterfaceVariable& interface);
Id signedType(Body& body, llvm::Type* type); // 32-bit integers, with the lanes of `type`

// Throws TranslationError on a built-in that this stage does not have.
StageVariable declareStageVariable(Body& body, const InterfaceVariable& interface,
                                   llvm::Type* type);

// Whether Vulkan has the built-in in another form than Metal.
bool isComputedBuiltIn(llvm::StringRef word);

// The value of such a built-in, computed at the place of the read. `gridSize` gives the exact grid;
// it is called only for the values that need it.
Id computedBuiltIn(Body& body, llvm::StringRef word, const std::function<Id()>& gridSize);

// Declares that the module has a value of SPV_EXT_mesh_shader.
void requireMeshShading(Body& body);

// Loads a built-in input of one value.
Id readBuiltIn(Body& body, spv::BuiltIn builtIn, llvm::Type* type);

// The threadgroup's size, as specialisation constants.
std::array<Id, 3> threadgroupSize(Body& body);

} // namespace tarnwick::msl::spirv
