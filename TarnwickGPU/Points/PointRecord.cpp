#include "TarnwickGPU/Points/PointRecord.h"

namespace tarnwick::gpu {

using namespace spirv;

namespace {

constexpr auto firstWord = static_cast<std::uint32_t>(PointMember::firstVertex);
constexpr auto memberCount = static_cast<std::uint32_t>(PointMember::rowPixels) + 1;
static_assert(sizeof(PointRecord) == 8 * firstWord + 4 * (memberCount - firstWord));
static_assert(sizeof(PointRecord) <= 128, "Vulkan 1.3, 33.1: maxPushConstantsSize");

std::uint32_t offsetOf(std::uint32_t member) {
    return member < firstWord ? 8 * member : 8 * firstWord + 4 * (member - firstWord);
}

} // namespace

PointRecordVariable::PointRecordVariable(Module& code) {
    const Id word = code.integer();
    const Id pair = code.vector(code.real(), 2);
    const Id record = code.type(spv::Op::OpTypeStruct, {pair, pair, pair, pair, pair, pair, pair,
                                                        pair, pair, word, word, word});
    code.decorate(record, spv::Decoration::Block);
    for (std::uint32_t member = 0; member < memberCount; ++member)
        code.decorateMember(record, member, spv::Decoration::Offset, {offsetOf(member)});
    variable_ = code.variable(spv::StorageClass::PushConstant, record);
}

Id PointRecordVariable::pair(PointBody& body, PointMember member) const {
    return body.load(spv::StorageClass::PushConstant, body.numbers2, variable_,
                     {body.module.constant(body.word, static_cast<std::uint32_t>(member))});
}

Id PointRecordVariable::word(PointBody& body, PointMember member) const {
    return body.load(spv::StorageClass::PushConstant, body.word, variable_,
                     {body.module.constant(body.word, static_cast<std::uint32_t>(member))});
}

} // namespace tarnwick::gpu
