// What crosses a stage's border in one record, value by value.
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

// Fills in a value's scalar and width; an array's length is `index` and its elements are looked at.
// False for what is neither a number nor a vector or array of them.
bool readShape(const clang::ASTContext& context, clang::QualType type, StageValue& value);

// The values of a record's members, those of its bases, nested records, arrays and matrices one by
// one ("inner.uv", "colours[1]"). What cannot cross is reported at its member.
std::vector<StageValue> stageValues(clang::ASTContext& context, const clang::CXXRecordDecl& record,
                                    Stage stage, Border border);

} // namespace tarnwick::msl
