// The values that a record passes into or out of a stage.
#pragma once

#include "TarnwickMSL/Translation/Signature.h"

#include <string_view>
#include <vector>

namespace clang {
class ASTContext;
class CXXRecordDecl;
class QualType;
} // namespace clang

namespace tarnwick::msl {

enum class Border : std::uint8_t { input, result };

// Sets a value's scalar and width. For an array: those of its element, and its length as `index`.
// False if the type is not a number, vector or array of these.
bool readShape(const clang::ASTContext& context, clang::QualType type, StageValue& value);

// The values of a record: members of bases, nested records, arrays and matrices, one by one
// ("inner.uv", "colours[1]"). Members of invalid types are reported.
std::vector<StageValue> stageValues(clang::ASTContext& context, const clang::CXXRecordDecl& record,
                                    Stage stage, Border border);

} // namespace tarnwick::msl
