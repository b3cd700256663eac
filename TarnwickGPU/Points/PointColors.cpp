#include "TarnwickGPU/Points/PointColors.h"

#include "TarnwickSpirv/Interface.h"

#include <bit>
#include <cstdint>
#include <limits>

namespace tarnwick::gpu {

using namespace spirv;

namespace {

Id four(PointBody& body, Id type, Id one) {
    return body.module.composite(type, {one, one, one, one});
}

// Tests the bits, since a device need not support NaN in comparisons (Vulkan 1.3, "Precision and
// Operation of SPIR-V Instructions").
Id isNaN(PointBody& body, Id color) {
    Module& code = body.module;
    const Id words = code.vector(body.word, 4);
    const auto infinity = std::bit_cast<std::uint32_t>(std::numeric_limits<float>::infinity());
    const Id bits = body.emit(spv::Op::OpBitcast, words, {color});
    const Id size = body.emit(spv::Op::OpBitwiseAnd, words,
                              {bits, four(body, words, code.constant(body.word, 0x7fffffffu))});
    return body.emit(spv::Op::OpUGreaterThan, code.vector(body.boolean, 4),
                     {size, four(body, words, code.constant(body.word, infinity))});
}

} // namespace

Id finiteColor(PointBody& body, Id color) {
    Module& code = body.module;
    const Id least = four(body, body.numbers4, code.constant(-greatestHalf));
    const Id most = four(body, body.numbers4, code.constant(greatestHalf));
    const Id bounded = body.extended(GLSLstd450NClamp, body.numbers4, {color, least, most});
    return body.emit(spv::Op::OpSelect, body.numbers4,
                     {isNaN(body, color), code.null(body.numbers4), bounded});
}

void keepColorFinite(PointBody& body) {
    const auto outputs = locations(body.module, spv::StorageClass::Output);
    const auto color = outputs.find(0);
    if (color != outputs.end() && pointee(body.module, color->second) == body.numbers4)
        body.store(color->second, finiteColor(body, body.load(color->second)));
}

} // namespace tarnwick::gpu
