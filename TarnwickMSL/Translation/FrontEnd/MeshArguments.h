// The arguments of object and mesh functions that no other functions have.
#pragma once

#include "TarnwickMSL/Translation/Signature.h"

namespace clang {
class ASTContext;
class ParmVarDecl;
} // namespace clang

namespace tarnwick::msl {

// Reads a [[payload]], a mesh_grid_properties or a mesh; the values of a mesh become the results of
// the signature. False if the parameter is another argument. Invalid ones are reported.
bool readMeshArgument(clang::ASTContext& context, const clang::ParmVarDecl& parameter,
                      EntrySignature& signature, Argument& argument);

} // namespace tarnwick::msl
