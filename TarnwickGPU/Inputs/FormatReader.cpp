#include "TarnwickGPU/Inputs/FormatReader.h"

#include <array>

namespace tarnwick::gpu {

using namespace spirv;

FormatReader::FormatReader(FunctionBody& body, Id words)
    : body_(body), words_(words), word_(body.module.integer()), number_(body.module.real()) {}

Id FormatReader::wordAt(Id byte) {
    const Id index = body_.emit(spv::Op::OpShiftRightLogical, word_, {byte, constant(2)});
    const Id place = body_.emit(spv::Op::OpAccessChain,
                                body_.module.pointer(spv::StorageClass::StorageBuffer, word_),
                                {words_, constant(0), index});
    return body_.emit(spv::Op::OpLoad, word_, {place});
}

// Some bits of a word as an integer, with its sign if the format is signed.
Id FormatReader::bitsIn(const VertexFormatRow& format, Id word, std::uint32_t first,
                        std::uint32_t count) {
    if (count == 32)
        return word;
    const bool isSigned = format.kind == NumberKind::snorm || format.kind == NumberKind::sint;
    return body_.emit(isSigned ? spv::Op::OpBitFieldSExtract : spv::Op::OpBitFieldUExtract, word_,
                      {word, constant(first), constant(count)});
}

Id FormatReader::bitsAt(const VertexFormatRow& format, Id byte, std::uint32_t component) {
    const std::uint32_t bit = component * format.bits;
    const Id word = wordAt(body_.emit(spv::Op::OpIAdd, word_, {byte, constant(bit / 32 * 4)}));
    return bitsIn(format, word, bit % 32, format.bits);
}

Id FormatReader::half(Id bits) {
    const Id pair =
        body_.extended(GLSLstd450UnpackHalf2x16, body_.module.vector(number_, 2), {bits});
    return body_.emit(spv::Op::OpCompositeExtract, number_, {pair, 0});
}

// The component of `count` bits as a number.
Id FormatReader::number(const VertexFormatRow& format, Id bits, std::uint32_t count) {
    auto most = [&](std::uint32_t ones) {
        return body_.module.constant(static_cast<float>((1u << ones) - 1));
    };
    switch (format.kind) {
    case NumberKind::uint:
    case NumberKind::sint:
        return bits;
    case NumberKind::float_:
        return count == 16 ? half(bits) : body_.emit(spv::Op::OpBitcast, number_, {bits});
    case NumberKind::unorm:
        return body_.emit(spv::Op::OpFDiv, number_,
                          {body_.emit(spv::Op::OpConvertUToF, number_, {bits}), most(count)});
    case NumberKind::snorm:
        break;
    }
    const Id whole = body_.emit(spv::Op::OpConvertSToF, number_, {bits});
    const Id part = body_.emit(spv::Op::OpFDiv, number_, {whole, most(count - 1)});
    return body_.extended(GLSLstd450FMax, number_, {part, body_.module.constant(-1.0f)});
}

// A float of 11 or 10 bits without a sign: a half without its lowest bits.
Id FormatReader::smallFloat(Id word, std::uint32_t component) {
    const std::uint32_t count = component == 2 ? 10 : 11;
    const Id bits = body_.emit(spv::Op::OpBitFieldUExtract, word_,
                               {word, constant(11 * component), constant(count)});
    return half(body_.emit(spv::Op::OpShiftLeftLogical, word_, {bits, constant(15 - count)}));
}

// 9 bits times the shared power of two (Khronos Data Format 1.3, 10.3).
Id FormatReader::scaledFloat(Id word, std::uint32_t component) {
    auto field = [&](std::uint32_t first, std::uint32_t count) {
        return body_.emit(spv::Op::OpBitFieldUExtract, word_,
                          {word, constant(first), constant(count)});
    };
    constexpr std::uint32_t bias = 15, mantissaBits = 9;
    const Id signedWord = body_.module.type(spv::Op::OpTypeInt, {32, 1});
    const Id exponent =
        body_.emit(spv::Op::OpISub, word_, {field(27, 5), constant(bias + mantissaBits)});
    const Id power = body_.emit(spv::Op::OpBitcast, signedWord, {exponent});
    const Id mantissa =
        body_.emit(spv::Op::OpConvertUToF, number_, {field(mantissaBits * component, 9)});
    return body_.extended(GLSLstd450Ldexp, number_, {mantissa, power});
}

Id FormatReader::component(const VertexFormatRow& format, Id byte, std::uint32_t component) {
    switch (format.packing) {
    case Packing::array:
        return number(format, bitsAt(format, byte, component), format.bits);
    case Packing::bgra: {
        const std::array<std::uint32_t, 4> order{2, 1, 0, 3};
        return number(format, bitsAt(format, byte, order[component]), format.bits);
    }
    case Packing::ten: {
        const std::uint32_t count = component == 3 ? 2 : 10;
        return number(format, bitsIn(format, wordAt(byte), 10 * component, count), count);
    }
    case Packing::eleven:
        return smallFloat(wordAt(byte), component);
    case Packing::sharedBits:
        break;
    }
    return scaledFloat(wordAt(byte), component);
}

Id FormatReader::read(const VertexFormatRow& format, Id byte) {
    std::array<Id, 4> components{};
    for (std::uint32_t at = 0; at < components.size(); ++at) {
        if (at < format.components)
            components[at] = component(format, byte, at);
        else if (format.isInteger())
            components[at] = constant(at == 3 ? 1 : 0);
        else
            components[at] = body_.module.constant(at == 3 ? 1.0f : 0.0f);
    }
    return body_.emit(spv::Op::OpCompositeConstruct,
                      body_.module.vector(format.isInteger() ? word_ : number_, 4), components);
}

} // namespace tarnwick::gpu
