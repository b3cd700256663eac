// A stage's inputs and outputs: locations and built-ins; and what decides their types.
#pragma once

#include "TarnwickMSL/Translation/Wgsl/Body.h"

#include <functional>

namespace tarnwick::msl::wgsl {

// The member of Inputs or Outputs that an interface variable is.
struct StageValue {
    std::string text;
    Sign sign = Sign::no;
};
// Throws TranslationError on a built-in that WGSL or this stage does not have.
StageValue declareStageValue(Body& body, const InterfaceVariable& interface, llvm::Type* type);

// Before a vertex function's code, if it writes a point's size: gives the name of the variable of
// the size. Takes the binding.
std::string declarePoint(Body& body, std::uint32_t binding);
// At the end of that function: moves the vertex to its corner of the point's square.
void placePoint(Body& body);

// An attribute of a vertex descriptor: msl.attribute(index, point).
Expression writeAttribute(Body& body, const llvm::CallInst& call);

// Whether WGSL has the built-in in another form than Metal.
bool isComputedBuiltIn(llvm::StringRef word);
// The value of such a built-in. `gridSize` gives the exact grid.
Expression computedBuiltIn(Body& body, llvm::StringRef word,
                           const std::function<Expression()>& gridSize);

// The overrides of the threadgroup's size, as a list: "threadsX, threadsY, threadsZ".
std::string threadgroupSize(Body& body);

} // namespace tarnwick::msl::wgsl
