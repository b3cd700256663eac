#include "TarnwickMSL/Translation/Passes/Features.h"

#include "TarnwickMSL/Capabilities.h"
#include "TarnwickMSL/Translation/TranslationError.h"

#include <algorithm>
#include <array>

namespace tarnwick::msl {
namespace {

struct Row {
    std::uint32_t capability; // SPIR-V 1.6, 3.31
    bool Target::*isThere;
    const char* words;
};
constexpr std::array<Row, 4> rows{{{9, &Target::hasFloat16, "16-bit floats (half)"},
                                   {11, &Target::hasInt64, "64-bit integers"},
                                   {22, &Target::hasInt16, "16-bit integers"},
                                   {39, &Target::hasInt8, "8-bit integers"}}};

} // namespace

void requireFeatures(const EntryPoint& made, const Target& target) {
    for (const Row& row : rows)
        if (!(target.*row.isThere) &&
            std::ranges::count(capabilitiesOf(made.words), row.capability) != 0)
            throw TranslationError("'" + made.name + "' needs " + row.words +
                                   ", which the target lacks");
}

} // namespace tarnwick::msl
