#include "TarnwickMSL/Translation/Spirv/Fetches.h"

namespace tarnwick::msl::spirv {

using namespace llvm;

// The input of a signed format is signed (Vulkan 1.3, 22.3).
bool Fetches::isSigned(std::uint32_t index) const {
    return any_of(shader_.attributes, [index](const StageAttribute& attribute) {
        return attribute.index == index &&
               (attribute.scalar == Scalar::int8 || attribute.scalar == Scalar::int16 ||
                attribute.scalar == Scalar::int32);
    });
}

Id Fetches::input(std::uint32_t index, Id type) {
    Id& known = made_[index];
    if (known)
        return known;
    known = body_.module.variable(spv::StorageClass::Input, type);
    body_.module.decorate(known, spv::Decoration::Location, {index});
    return known;
}

Id Fetches::function(std::uint32_t index, Type* result) {
    Id& known = made_[index];
    if (known)
        return known;
    known = body_.module.newId();
    tarnwick::spirv::FunctionBody zero(body_.module);
    zero.parameter(body_.types.of(body_.i32()));
    zero.act(spv::Op::OpReturnValue, {body_.constants.null(result)});
    zero.finish(known, 0, body_.types.of(result));
    return known;
}

Id Fetches::write(const CallInst& call) {
    Type* type = call.getType();
    auto index =
        static_cast<std::uint32_t>(cast<ConstantInt>(call.getArgOperand(0))->getZExtValue());
    if (!haveInputs())
        return body_.emit(spv::Op::OpFunctionCall, type,
                          {function(index, type), body_.id(call.getArgOperand(1))});
    Id given = isSigned(index) ? body_.types.signedVector() : body_.types.of(type);
    Id value = body_.emit(spv::Op::OpLoad, given, {input(index, given)});
    return isSigned(index) ? body_.emit(spv::Op::OpBitcast, type, {value}) : value;
}

std::vector<StageAttribute> Fetches::used() const {
    std::vector<StageAttribute> used;
    for (const StageAttribute& attribute : shader_.attributes) {
        auto found = made_.find(attribute.index);
        if (found == made_.end())
            continue;
        used.push_back(attribute);
        used.back().fetch = haveInputs() ? 0 : found->second;
    }
    sort(used, [](const auto& a, const auto& b) { return a.index < b.index; });
    return used;
}

} // namespace tarnwick::msl::spirv
