// The rules of `uniform<T>` (Metal Shading Language 3.1, 2.14.2): a uniform value is made of
// constants and of uniform values, and a pointer is not uniform.
#pragma once

#include <clang/AST/ASTContext.h>
#include <clang/AST/Decl.h>

#include <vector>

namespace tarnwick::msl {

void checkUniforms(clang::ASTContext& context, const std::vector<clang::Decl*>& program);

} // namespace tarnwick::msl
