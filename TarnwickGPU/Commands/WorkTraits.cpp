#include "TarnwickGPU/Commands/WorkTraits.h"

#include <spirv/unified1/spirv.hpp11>

#include <algorithm>
#include <span>

namespace tarnwick::gpu {

namespace {

// The built-in that an instruction decorates with (SPIR-V 1.6, 3.37.8); Max: another instruction.
spv::BuiltIn decoratedBuiltIn(std::span<const std::uint32_t> instruction) {
    const auto op = static_cast<spv::Op>(instruction[0] & 0xffff);
    const std::size_t at = op == spv::Op::OpDecorate ? 2 : op == spv::Op::OpMemberDecorate ? 3 : 0;
    if (at == 0 || instruction.size() < at + 2 ||
        static_cast<spv::Decoration>(instruction[at]) != spv::Decoration::BuiltIn)
        return spv::BuiltIn::Max;
    return static_cast<spv::BuiltIn>(instruction[at + 1]);
}

bool stores(const msl::EntryPoint& function) {
    return function.storesByAddress ||
           std::ranges::any_of(function.resources, [](const msl::Resource& resource) {
               return resource.isWritten && resource.kind != msl::ResourceKind::loopReport;
           });
}

} // namespace

void heed(WorkTraits& traits, const msl::EntryPoint& function) {
    constexpr std::size_t headerWords = 5;
    if (function.stage == msl::Stage::vertex && stores(function))
        traits.byPixels = false;
    const std::span<const std::uint32_t> words(function.words);
    for (std::size_t at = headerWords; at < words.size();) {
        const std::size_t length = words[at] >> 16;
        if (length == 0 || length > words.size() - at)
            return;
        switch (decoratedBuiltIn(words.subspan(at, length))) {
        case spv::BuiltIn::PrimitiveId:
            traits.byVertices = traits.byInstances = false;
            break;
        case spv::BuiltIn::BaseVertex:
            traits.byVertices = false;
            break;
        case spv::BuiltIn::BaseInstance:
            traits.byInstances = false;
            break;
        case spv::BuiltIn::NumWorkgroups:
            traits.byThreadgroups = false;
            break;
        default:
            break;
        }
        at += length;
    }
}

} // namespace tarnwick::gpu
