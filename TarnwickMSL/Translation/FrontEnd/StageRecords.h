// The values that a record passes into or out of a stage.
#pragma once

#include "TarnwickMSL/Translation/Signature.h"

#include <optional>
#include <string_view>
#include <vector>

namespace clang {
class ASTContext;
class CXXRecordDecl;
class QualType;
} // namespace clang

namespace tarnwick::msl {

inline constexpr std::uint32_t mostColors = 8;

enum class Border : std::uint8_t { input, result };

// Sets a value's scalar and width. For an array: those of its element, and its length as `index`.
// False if the type is not a number, vector or array of these.
bool readShape(const clang::ASTContext& context, clang::QualType type, StageValue& value);

// "flat", "center_perspective" and the other words of Metal Shading Language 3.1, 5.4.
std::optional<Interpolation> interpolationNamed(std::string_view word);

// The functions that a record is an input or a result of.
struct StagePlace {
    Stage stage = Stage::fragment;
    PatchKind patch = PatchKind::none;
    Border border = Border::input;
    bool isOfPrimitive = false; // a result of a mesh function

    // Whether the members come from buffers, each by its attribute(n) (Metal Shading Language 3.1,
    // 5.2.4); otherwise they come from the stage before.
    bool hasAttributes() const { return border == Border::input && stage != Stage::fragment; }
};

// The values of a record: members of bases, nested records, arrays and matrices, one by one
// ("inner.uv", "colours[1]"). Members of invalid types are reported.
std::vector<StageValue> stageValues(clang::ASTContext& context, const clang::CXXRecordDecl& record,
                                    const StagePlace& place);

} // namespace tarnwick::msl
