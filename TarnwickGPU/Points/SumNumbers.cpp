#include "TarnwickGPU/Points/SumNumbers.h"

namespace tarnwick::gpu {

using namespace spirv;

SumNumbers::SumNumbers(Module& code, PointBody& body, std::uint32_t binding, SumForm form)
    : code_(code), body_(body), form_(form),
      number_(form == SumForm::integers ? code.integer(64) : body.word),
      buffer_(numbersBuffer(code, number_, form == SumForm::integers ? 8 : 4, binding)) {
    if (form == SumForm::integers)
        code.require(spv::Capability::Int64);
}

Id SumNumbers::constant(std::uint32_t value) {
    return code_.constant(body_.word, value);
}

Id SumNumbers::place(Id index, std::uint32_t part) {
    if (form_ == SumForm::integers)
        return body_.placeIn(buffer_, number_, index);
    const Id first = word(spv::Op::OpIMul, index, constant(2));
    return body_.placeIn(buffer_, number_, word(spv::Op::OpIAdd, first, constant(part)));
}

Id SumNumbers::addAtomically(Id place, Id number) {
    constexpr std::uint32_t deviceScope = 1, relaxed = 0; // SPIR-V 1.6, 3.27 and 3.25
    return body_.emit(spv::Op::OpAtomicIAdd, number_,
                      {place, constant(deviceScope), constant(relaxed), number});
}

SumNumbers::Pair SumNumbers::negatedIf(Id isNegative, Pair pair) {
    const auto choice = [&](Id a, Id b) {
        return body_.emit(spv::Op::OpSelect, body_.word, {isNegative, a, b});
    };
    const Id isZero = body_.emit(spv::Op::OpIEqual, body_.boolean, {pair.low, constant(0)});
    const Id carry = body_.emit(spv::Op::OpSelect, body_.word, {isZero, constant(1), constant(0)});
    const Id low = body_.emit(spv::Op::OpSNegate, body_.word, {pair.low});
    const Id high =
        word(spv::Op::OpIAdd, body_.emit(spv::Op::OpNot, body_.word, {pair.high}), carry);
    return {choice(low, pair.low), choice(high, pair.high)};
}

void SumNumbers::add(Id index, Id given) {
    if (form_ == SumForm::integers) {
        code_.require(spv::Capability::Int64Atomics);
        addAtomically(place(index, 0), body_.emit(spv::Op::OpConvertFToS, number_, {given}));
        return;
    }
    // The products and the difference are exact.
    const Id size = body_.extended(GLSLstd450FAbs, body_.number, {given});
    const Id high = body_.extended(GLSLstd450Floor, body_.number,
                                   {real(spv::Op::OpFMul, size, code_.constant(0x1p-32f))});
    const Id low =
        real(spv::Op::OpFSub, size, real(spv::Op::OpFMul, high, code_.constant(0x1p32f)));
    const auto integer = [&](Id of) {
        return body_.emit(spv::Op::OpConvertFToU, body_.word, {of});
    };
    const Id isNegative =
        body_.emit(spv::Op::OpFOrdLessThan, body_.boolean, {given, code_.constant(0.0f)});
    const Pair pair = negatedIf(isNegative, {integer(low), integer(high)});
    const Id before = addAtomically(place(index, 0), pair.low);
    const Id overflows = body_.emit(spv::Op::OpULessThan, body_.boolean,
                                    {word(spv::Op::OpIAdd, before, pair.low), before});
    const Id carry =
        body_.emit(spv::Op::OpSelect, body_.word, {overflows, constant(1), constant(0)});
    addAtomically(place(index, 1), word(spv::Op::OpIAdd, pair.high, carry));
}

Id SumNumbers::take(Id index) {
    const auto taken = [&](std::uint32_t part) {
        const Id at = place(index, part);
        const Id value = body_.emit(spv::Op::OpLoad, number_, {at});
        body_.store(at, code_.null(number_));
        return value;
    };
    if (form_ == SumForm::integers)
        return body_.emit(spv::Op::OpConvertSToF, body_.number, {taken(0)});
    const Id low = taken(0), high = taken(1);
    const Id isNegative = body_.emit(spv::Op::OpSLessThan, body_.boolean, {high, constant(0)});
    const Pair size = negatedIf(isNegative, {low, high});
    const auto asReal = [&](Id of) {
        return body_.emit(spv::Op::OpConvertUToF, body_.number, {of});
    };
    const Id sum =
        real(spv::Op::OpFAdd, real(spv::Op::OpFMul, asReal(size.high), code_.constant(0x1p32f)),
             asReal(size.low));
    return body_.emit(spv::Op::OpSelect, body_.number,
                      {isNegative, body_.emit(spv::Op::OpFNegate, body_.number, {sum}), sum});
}

} // namespace tarnwick::gpu
