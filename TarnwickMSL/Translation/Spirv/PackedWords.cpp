// Threadgroup memory as words that smaller values share (View::isPacked).
//
// A word may have a value of one invocation beside one of another. SPIR-V has no store of a part of
// a word, and a load, a change and a store would lose what the other invocation stores meanwhile.
// So a store is two atomic operations: one removes the old bits, one adds the new bits. Only a
// reader of this value could see the state between them, and without a barrier it may not read.
#include "TarnwickMSL/Translation/Spirv/Memory.h"

namespace tarnwick::msl::spirv {

using namespace llvm;

static Id withinGroup(Body& body) {
    return body.constants.word(static_cast<std::uint32_t>(spv::Scope::Workgroup));
}

static Id relaxed(Body& body) {
    return body.constants.word(0);
}

static Type* bitsOf(const Access& access, unsigned bits) {
    return Type::getIntNTy(access.type->getContext(), bits);
}

Memory::Part Memory::part(const Found& found, const Access& access) {
    const unsigned bits = access.type->isIntegerTy(1) ? 8 : access.type->getScalarSizeInBits();
    if (access.form == Access::Form::narrow)
        return {chain(found, access, false), body_.constants.word(access.first * 8), bits};
    const Variable& variable = *found.variable;
    const auto shifted = [&](spv::Op op, Id value, std::uint32_t by) {
        return body_.emit(op, body_.i32(), {value, body_.constants.word(by)});
    };
    const Step& step = access.steps.front();
    const Id byte = sum(step);
    const Id last = variable.length
                        ? lastIndex(variable)
                        : body_.constants.word(static_cast<std::uint32_t>(step.bound - 1));
    const Id index = body_.extended(GLSLstd450UMin, body_.i32(),
                                    {shifted(spv::Op::OpShiftRightLogical, byte, 2), last});
    const Id inWord =
        body_.emit(spv::Op::OpBitwiseAnd, body_.i32(), {byte, body_.constants.word(3)});
    const Id word =
        body_.emit(spv::Op::OpAccessChain,
                   body_.module.pointer(found.root->storage, body_.types.of(access.leaf)),
                   {variable.id, index});
    return {word, shifted(spv::Op::OpShiftLeftLogical, inWord, 3), bits};
}

Id Memory::readPart(const Found& found, const Access& access) {
    const Part at = part(found, access);
    const Id word = body_.emit(spv::Op::OpAtomicLoad, body_.i32(),
                               {at.word, withinGroup(body_), relaxed(body_)});
    const Id value = body_.emit(spv::Op::OpShiftRightLogical, body_.i32(), {word, at.shift});
    Type* integer = bitsOf(access, at.bits);
    return converted(access.type, integer, body_.resized(integer, body_.i32(), value, false));
}

void Memory::writePart(const Found& found, const Access& access, Id value) {
    const Part at = part(found, access);
    Type* integer = bitsOf(access, at.bits);
    const auto inPlace = [&](Id bits) {
        return body_.emit(spv::Op::OpShiftLeftLogical, body_.i32(), {bits, at.shift});
    };
    const auto change = [&](spv::Op op, Id operand) {
        body_.emit(op, body_.i32(), {at.word, withinGroup(body_), relaxed(body_), operand});
    };
    const Id mask = inPlace(body_.constants.word((1u << at.bits) - 1));
    const Id bits =
        inPlace(body_.resized(body_.i32(), integer, converted(integer, access.type, value), false));
    change(spv::Op::OpAtomicAnd, body_.emit(spv::Op::OpNot, body_.i32(), {mask}));
    change(spv::Op::OpAtomicOr, bits);
}

} // namespace tarnwick::msl::spirv
