#include "TarnwickSpirv/Specialising.h"

namespace tarnwick::spirv {

static constexpr std::size_t headerWords = 5; // SPIR-V 1.6, 2.3

static bool isNumber(const Instruction& each) {
    return each.op == spv::Op::OpDecorate &&
           each.operands[1] == static_cast<std::uint32_t>(spv::Decoration::SpecId);
}

static spv::Op constantOf(spv::Op op, const Words& value) {
    if (op == spv::Op::OpSpecConstant)
        return spv::Op::OpConstant;
    return value.front() != 0 ? spv::Op::OpConstantTrue : spv::Op::OpConstantFalse;
}

Words specialised(Operands module, const SpecialisationValues& values) {
    Words changed(module.begin(), module.begin() + headerWords);
    std::map<Id, const Words*> byId;
    eachInstruction(module.subspan(headerWords), [&](const Instruction& each) {
        if (isNumber(each))
            if (const auto value = values.find(each.operands[2]); value != values.end()) {
                byId[each.operands[0]] = &value->second;
                return;
            }
        const bool isBool =
            each.op == spv::Op::OpSpecConstantTrue || each.op == spv::Op::OpSpecConstantFalse;
        const auto value =
            isBool || each.op == spv::Op::OpSpecConstant ? byId.find(each.operands[1]) : byId.end();
        if (value == byId.end())
            append(changed, each.op, each.operands);
        else
            append(changed, constantOf(each.op, *value->second), each.operands.first(2),
                   isBool ? Operands() : Operands(*value->second));
    });
    return changed;
}

} // namespace tarnwick::spirv
