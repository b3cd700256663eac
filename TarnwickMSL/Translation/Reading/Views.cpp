#include "TarnwickMSL/Translation/Reading/Views.h"

#include <llvm/Analysis/ConstantFolding.h>

namespace tarnwick::msl::reading {

using namespace llvm;

bool fits(const View& view, const Use& use, bool isShared, const DataLayout& layout) {
    const std::optional<Access> found = access(view, use.place, use.type, layout);
    return found && suits(*found, use, isShared);
}

View fittingView(const Value& value, const View& declared, std::uint64_t bytes, bool isShared,
                 const DataLayout& layout) {
    const std::vector<Use> uses = usesOf(value, layout);
    const auto isFit = [&](const View& view) {
        return all_of(uses, [&](const Use& use) { return fits(view, use, isShared, layout); });
    };
    const bool isDeclaredFit = isFit(declared);
    const auto reaches = [&](const Use& use) {
        return isCertain(*access(declared, use.place, use.type, layout));
    };
    if (isDeclaredFit && all_of(uses, reaches))
        return declared;
    View common = commonView(uses, bytes, value.getContext(), layout);
    if (isFit(common))
        return common;
    const View packed = packedView(bytes, value.getContext());
    const auto fitsPacked = [&](const Use& use) { return fits(packed, use, false, layout); };
    if (isShared && all_of(uses, fitsPacked))
        return packed;
    return isDeclaredFit ? declared : common;
}

View fittingView(const Value& value, Type* type, bool isShared, const DataLayout& layout) {
    View declared{.element = type, .isArray = false, .count = 0, .layout = Layout::plain};
    return fittingView(value, declared, layout.getTypeAllocSize(type).getFixedValue(), isShared,
                       layout);
}

bool isWritten(const GlobalVariable& global, const DataLayout& layout) {
    return !global.isConstant() &&
           any_of(usesOf(global, layout), [](const Use& use) { return use.isWrite; });
}

Constant* elementOf(const GlobalVariable& table, Type* type, std::uint64_t index,
                    const DataLayout& layout) {
    auto* initialiser = const_cast<Constant*>(table.getInitializer());
    const std::uint64_t stride = layout.getTypeAllocSize(type).getFixedValue();
    const APInt offset(layout.getIndexTypeSizeInBits(table.getType()), index * stride);
    Constant* folded = ConstantFoldLoadFromConst(initialiser, type, offset, layout);
    return folded ? folded : Constant::getNullValue(type);
}

} // namespace tarnwick::msl::reading
