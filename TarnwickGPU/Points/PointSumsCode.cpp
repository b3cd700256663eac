#include "TarnwickGPU/Points/PointKernel.h"
#include "TarnwickGPU/Points/PointRecord.h"

#include <array>

namespace tarnwick::gpu {

using namespace spirv;

// One triangle over the whole viewport.
Words sumsVertex() {
    Module code;
    PointBody body(code);
    const Id given = code.builtIn(spv::BuiltIn::VertexIndex, spv::StorageClass::Input, body.word);
    const Id position =
        code.builtIn(spv::BuiltIn::Position, spv::StorageClass::Output, body.numbers4);
    const Id corner = body.load(given);
    auto side = [&](std::uint32_t atCorner) { // -1, at its corner 3
        const Id is = body.emit(spv::Op::OpIEqual, body.boolean,
                                {corner, code.constant(body.word, atCorner)});
        return body.emit(spv::Op::OpSelect, body.number,
                         {is, code.constant(3.0f), code.constant(-1.0f)});
    };
    body.store(position, body.emit(spv::Op::OpCompositeConstruct, body.numbers4,
                                   {side(1), side(2), code.constant(0.0f), code.constant(1.0f)}));
    body.finish(code.main());
    return code.finish(spv::ExecutionModel::Vertex);
}

Words sumsFragment(SumForm form) {
    Module code;
    PointBody body(code);
    const PointRecordVariable record(code);
    SumNumbers sums(code, body, 0, form);
    const Id given = code.builtIn(spv::BuiltIn::FragCoord, spv::StorageClass::Input, body.numbers4);
    const Id color = code.variable(spv::StorageClass::Output, body.numbers4);
    code.decorate(color, spv::Decoration::Location, {0});
    const Id at = body.load(given);
    auto word = [&](std::uint32_t lane) {
        return body.emit(spv::Op::OpConvertFToU, body.word, {body.part(at, body.number, lane)});
    };
    auto number = [&](spv::Op op, Id left, Id right) {
        return body.emit(op, body.word, {left, right});
    };
    const Id row = number(spv::Op::OpIMul, word(1), record.word(body, PointMember::rowPixels));
    const Id pixel = number(spv::Op::OpIMul, number(spv::Op::OpIAdd, row, word(0)),
                            code.constant(body.word, 4u));
    std::array<Id, 4> parts{};
    for (std::uint32_t lane = 0; lane < 4; ++lane)
        parts[lane] = sums.take(number(spv::Op::OpIAdd, pixel, code.constant(body.word, lane)));
    const Id whole = body.emit(spv::Op::OpCompositeConstruct, body.numbers4,
                               {parts[0], parts[1], parts[2], parts[3]});
    const Id undo = body.part(record.pair(body, PointMember::rounding), body.number, 1);
    body.store(color, body.emit(spv::Op::OpVectorTimesScalar, body.numbers4, {whole, undo}));
    body.finish(code.main());
    code.executionMode(spv::ExecutionMode::OriginUpperLeft);
    return code.finish(spv::ExecutionModel::Fragment);
}

} // namespace tarnwick::gpu
