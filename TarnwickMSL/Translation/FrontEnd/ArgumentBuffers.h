// The members of argument buffers (Metal Shading Language 3.1, 2.13): records whose textures,
// samplers and pointers the host sets.
#pragma once

#include "TarnwickMSL/Translation/Signature.h"

#include <clang/AST/DeclTemplate.h>
#include <clang/AST/Type.h>

#include <string>
#include <vector>

namespace clang {
class ASTContext;
class CodeGenerator;
} // namespace clang

namespace tarnwick::msl {

// The maximum of one record.
inline constexpr std::size_t mostMembers = 1024;

// Whether the type holds a texture or a sampler, or a member with [[id(n)]].
bool isArgumentBuffer(clang::QualType type);

// All members in the order of their places, elements of arrays one by one, at most one more than
// mostMembers.
std::vector<Argument> argumentMembers(clang::ASTContext& context, clang::QualType type);

// Gives the pointers among the members of the type the LLVM types of what they point to.
void completeMembers(clang::ASTContext& context, clang::QualType type,
                     std::vector<Argument>& members, clang::CodeGenerator& generator);

// The text of the LLVM type that Clang gives the type in memory; empty if that is not complete.
std::string memoryText(clang::QualType type, clang::CodeGenerator& generator);

// Sets the shape and the access of a texture. Returns false for another class.
bool readTexture(clang::ASTContext& context, const clang::ClassTemplateSpecializationDecl& texture,
                 Argument& argument);

// The size and the alignment of what a buffer points to.
void readPointee(clang::ASTContext& context, clang::QualType pointee, Argument& argument);

} // namespace tarnwick::msl
