// Object and mesh functions: the calls by which they set the grid and the mesh.
#pragma once

#include "TarnwickMSL/Translation/Passes/Entry/Interface.h"

namespace tarnwick::msl {

// Replaces the library's calls by stores: the members of vertices and primitives to outputs, the
// other values to threadgroup memory, which the writer reads at the end of the function
// (Spirv/Meshes.h).
void replaceMeshCalls(llvm::Function& body, ShaderModule& shader, const EntrySignature& entry,
                      Interface& interface);

// Sets the grid or the number of primitives to zero before any invocation of the threadgroup may
// set it.
void clearMesh(llvm::IRBuilder<>& builder, ShaderModule& shader, Interface& interface);

// The object_data of an object or mesh function: an array of the smallest type of number in
// `pointee`, so that both functions see the same type however they access it. A pointer points to
// the maximum of bytes.
llvm::Value* payload(const Argument& given, llvm::Type* pointee, Interface& interface);

} // namespace tarnwick::msl
