#include "TarnwickGPU/Points/PointForms.h"

#include "TarnwickGPU/Points/PointColors.h"
#include "TarnwickGPU/Points/PointConstants.h"
#include "TarnwickSpirv/Interface.h"
#include "TarnwickSpirv/Link.h"
#include "TarnwickSpirv/Rewriting.h"

#include <algorithm>
#include <limits>

namespace tarnwick::gpu {

using namespace spirv;

namespace {

constexpr std::uint32_t cornersAPoint = 6;
// Bit n is for corner n: whether it is at the right, and whether at the bottom. Both triangles are
// clockwise, so that they face front as points do.
constexpr std::uint32_t rightCorners = 0b110010, lowerCorners = 0b101100;

Id all(PointBody& body, Id lanes) {
    return body.emit(spv::Op::OpAll, body.boolean, {lanes});
}

Id booleans(PointBody& body) {
    return body.module.vector(body.boolean, 2);
}

Id twice(PointBody& body, float value) {
    const Id one = body.module.constant(value);
    return body.module.composite(body.numbers2, {one, one});
}

Id spread(PointBody& body, Id value) {
    return body.emit(spv::Op::OpCompositeConstruct, body.numbers2, {value, value});
}

// Rounds to 1/256 pixel, as devices usually round their own points; at least they have 4 fractional
// bits (Vulkan 1.3, 33.1, subPixelPrecisionBits). `by` is multiplied before.
Id snapped(PointBody& body, GLSLstd450 rounding, Id type, Id value, float by) {
    constexpr float steps = 256;
    auto times = [&](Id number, float factor) {
        const spv::Op op = type == body.number ? spv::Op::OpFMul : spv::Op::OpVectorTimesScalar;
        return body.emit(op, type, {number, body.module.constant(factor)});
    };
    return times(body.extended(rounding, type, {times(value, by * steps)}), 1 / steps);
}

// Finite, in front of the eye and between the near and far planes. NaN fails each comparison.
Id isBeforeTheEye(PointBody& body, const PointSquare& square, Id rawSize) {
    const Id z = body.part(square.position, body.number, 2);
    const Id w = body.part(square.position, body.number, 3);
    const Id zero = body.module.constant(0.0f);
    const Id most = body.module.constant(std::numeric_limits<float>::max());
    auto is = [&](spv::Op op, Id left, Id right) {
        return body.emit(op, body.boolean, {left, right});
    };
    Id yes = is(spv::Op::OpFOrdGreaterThan, w, zero);
    yes = body.both(yes, is(spv::Op::OpFOrdLessThanEqual, w, most));
    yes = body.both(yes, is(spv::Op::OpFOrdGreaterThanEqual, z, zero));
    yes = body.both(yes, is(spv::Op::OpFOrdLessThanEqual, z, w));
    yes = body.both(yes, is(spv::Op::OpFOrdGreaterThan, rawSize, zero));
    return body.both(yes, is(spv::Op::OpFOrdLessThanEqual, rawSize, most));
}

Id isAmongSizes(PointBody& body, const PointRecordVariable& record, Id size) {
    const Id sizes = record.pair(body, PointMember::sizes);
    return body.both(body.emit(spv::Op::OpFOrdGreaterThan, body.boolean,
                               {size, body.part(sizes, body.number, 0)}),
                     body.emit(spv::Op::OpFOrdLessThanEqual, body.boolean,
                               {size, body.part(sizes, body.number, 1)}));
}

// A place that every device clips.
Id nowhere(PointBody& body) {
    Module& code = body.module;
    return code.composite(body.numbers4, {code.constant(0.0f), code.constant(0.0f),
                                          code.constant(2.0f), code.constant(1.0f)});
}

// The function's position with other x and y, or a clipped one.
void storePosition(PointBody& body, Id variable, const PointSquare& square, Id isDrawn, Id xy) {
    const Id moved =
        body.emit(spv::Op::OpVectorShuffle, body.numbers4, {xy, square.position, 0, 1, 4, 5});
    body.store(variable,
               body.emit(spv::Op::OpSelect, body.numbers4, {isDrawn, moved, nowhere(body)}));
}

struct VertexOutputs {
    Id position;
    std::optional<Id> size;
};

// A device draws no points smaller than a pixel. A smaller one that covers a pixel's centre is
// drawn as one pixel, and the fragment function's coordinates are stretched.
void endPoints(PointBody& body, VertexOutputs outputs, std::uint32_t location) {
    Module& code = body.module;
    const PointRecordVariable record(code);
    const PointSquare square = pointSquare(body, record, outputs.position, outputs.size);
    const Id isDrawn = body.both(body.both(square.isDrawn, square.covers),
                                 isAmongSizes(body, record, square.size));
    const Id xy = body.emit(spv::Op::OpVectorShuffle, body.numbers2,
                            {square.position, square.position, 0, 1});
    const Id scaled =
        body.emit(spv::Op::OpFMul, body.numbers2, {xy, record.pair(body, PointMember::scale)});
    storePosition(body, outputs.position, square, isDrawn, scaled);
    const Id one = code.constant(1.0f);
    const Id size = outputs.size ? *outputs.size
                                 : code.builtIn(spv::BuiltIn::PointSize, spv::StorageClass::Output,
                                                body.number);
    body.store(size, body.extended(GLSLstd450NMax, body.number, {square.size, one}));
    const Id stretch = code.variable(spv::StorageClass::Output, body.number);
    code.decorate(stretch, spv::Decoration::Location, {location});
    const Id inverse = body.emit(spv::Op::OpFDiv, body.number, {one, square.size});
    body.store(stretch, body.extended(GLSLstd450NMax, body.number, {inverse, one}));
}

Id isCornerAt(PointBody& body, Id corner, std::uint32_t corners) {
    Module& code = body.module;
    const Id shifted = body.emit(spv::Op::OpShiftRightLogical, body.word,
                                 {code.constant(body.word, corners), corner});
    const Id bit =
        body.emit(spv::Op::OpBitwiseAnd, body.word, {shifted, code.constant(body.word, 1u)});
    return body.emit(spv::Op::OpConvertUToF, body.number, {bit});
}

void endQuads(PointBody& body, VertexOutputs outputs, std::uint32_t location, Id corner) {
    Module& code = body.module;
    const PointRecordVariable record(code);
    const PointSquare square = pointSquare(body, record, outputs.position, outputs.size);
    const Id isDrawn = body.both(square.isDrawn, isAmongSizes(body, record, square.size));
    const Id at =
        body.emit(spv::Op::OpCompositeConstruct, body.numbers2,
                  {isCornerAt(body, corner, rightCorners), isCornerAt(body, corner, lowerCorners)});
    const Id centred = body.emit(spv::Op::OpFSub, body.numbers2, {at, twice(body, 0.5f)});
    const Id pixels =
        body.emit(spv::Op::OpVectorTimesScalar, body.numbers2, {centred, square.size});
    const Id offset =
        body.emit(spv::Op::OpFDiv, body.numbers2, {pixels, record.pair(body, PointMember::half)});
    const Id moved = body.emit(spv::Op::OpFAdd, body.numbers2, {square.place, offset});
    const Id w = body.part(square.position, body.number, 3);
    storePosition(body, outputs.position, square, isDrawn,
                  body.emit(spv::Op::OpVectorTimesScalar, body.numbers2, {moved, w}));
    const Id coordinates = code.variable(spv::StorageClass::Output, body.numbers2);
    code.decorate(coordinates, spv::Decoration::Location, {location});
    body.store(coordinates, at);
}

// Stores the point's number in the built-in's variable. Returns the corner's number.
std::optional<Id> divideIndex(PointBody& body, spv::BuiltIn builtIn, std::uint32_t divisor) {
    Module& code = body.module;
    const std::optional<Id> seen = spirv::builtIn(code, builtIn);
    if (!seen)
        return std::nullopt;
    const Id type = pointee(code, *seen);
    makePrivate(code, *seen);
    const Id given = code.builtIn(builtIn, spv::StorageClass::Input, type);
    if (builtIn == spv::BuiltIn::PrimitiveId) // VUID-StandaloneSpirv-Flat-04744
        code.decorate(given, spv::Decoration::Flat);
    const Id index = body.emit(spv::Op::OpLoad, type, {given});
    const Id by = code.constant(type, divisor);
    body.store(*seen, body.emit(spv::Op::OpUDiv, type, {index, by}));
    return body.emit(spv::Op::OpUMod, type, {index, by});
}

Id cornerOf(PointBody& body) {
    if (const auto corner = divideIndex(body, spv::BuiltIn::VertexIndex, cornersAPoint))
        return *corner;
    Module& code = body.module; // the function does not read its number
    const Id given = code.builtIn(spv::BuiltIn::VertexIndex, spv::StorageClass::Input, body.word);
    return body.emit(spv::Op::OpUMod, body.word,
                     {body.load(given), code.constant(body.word, cornersAPoint)});
}

void stretchCoordinates(PointBody& body, Id seen, std::uint32_t location) {
    Module& code = body.module;
    makePrivate(code, seen);
    const Id given =
        code.builtIn(spv::BuiltIn::PointCoord, spv::StorageClass::Input, body.numbers2);
    const Id stretch = code.variable(spv::StorageClass::Input, body.number);
    code.decorate(stretch, spv::Decoration::Location, {location});
    code.decorate(stretch, spv::Decoration::Flat);
    const Id middle = twice(body, 0.5f);
    const Id centred = body.emit(spv::Op::OpFSub, body.numbers2, {body.load(given), middle});
    const Id stretched =
        body.emit(spv::Op::OpVectorTimesScalar, body.numbers2, {centred, body.load(stretch)});
    body.store(seen, body.emit(spv::Op::OpFAdd, body.numbers2, {stretched, middle}));
}

std::uint32_t freeLocation(const msl::EntryPoint& vertex, const msl::EntryPoint& fragment) {
    std::uint32_t free = 0;
    for (const auto& [location, variable] :
         locations(Module(vertex.words), spv::StorageClass::Output))
        free = std::max(free, location + 1);
    for (const auto& [location, variable] :
         locations(Module(fragment.words), spv::StorageClass::Input))
        free = std::max(free, location + 1);
    return free;
}

// The parts of a fragment function that are linked into the vertex function's module.
struct LinkedConstants {
    Id function = 0;
    std::vector<Id> variables;
    std::map<std::uint32_t, Id> inputs;
};

std::optional<LinkedConstants> linkConstants(Module& vertex, const msl::EntryPoint& fragment) {
    Module code(fragment.words);
    const auto constants = partConstants(code);
    if (!constants)
        return std::nullopt;
    LinkedConstants linked{.inputs = locations(code, spv::StorageClass::Input)};
    removeFunction(code, code.main());
    for (const spv::StorageClass storage : {spv::StorageClass::Input, spv::StorageClass::Output})
        for (const Id variable : variables(code, storage))
            makePrivate(code, variable);
    std::erase(code.capabilities, spv::Capability::DemoteToHelperInvocation);
    const auto ids = link(vertex, code);
    if (!ids)
        return std::nullopt;
    linked.function = ids->at(constants->function);
    for (const Id variable : constants->variables)
        linked.variables.push_back(ids->at(variable));
    for (auto& [location, variable] : linked.inputs)
        variable = ids->at(variable);
    return linked;
}

// After the vertex function: outputs the fragment function's constants.
void passConstants(PointBody& body, const PointPair& pair) {
    Module& code = body.module;
    const auto outputs = locations(code, spv::StorageClass::Output);
    const auto linked = linkConstants(code, pair.fragment);
    for (const auto& [location, input] : linked->inputs) {
        const auto output = outputs.find(location);
        const Id type = pointee(code, input);
        const bool fits = output != outputs.end() && pointee(code, output->second) == type;
        body.store(input, fits ? body.load(output->second) : code.null(type));
    }
    body.call(linked->function);
    std::uint32_t location = pair.location;
    for (const Id variable : linked->variables) {
        const Id output = code.variable(spv::StorageClass::Output, pointee(code, variable));
        code.decorate(output, spv::Decoration::Location, {++location});
        body.store(output, body.load(variable));
    }
}

void takeConstants(Module& code, std::uint32_t location) {
    const auto constants = partConstants(code);
    removeFunction(code, constants->function);
    for (const Id variable : constants->variables) {
        changeStorage(code, variable, spv::StorageClass::Input);
        code.decorate(variable, spv::Decoration::Location, {location++});
        code.decorate(variable, spv::Decoration::Flat);
    }
}

} // namespace

PointSquare pointSquare(PointBody& body, const PointRecordVariable& record, Id position,
                        std::optional<Id> size) {
    Module& code = body.module;
    const Id pair = body.numbers2;
    PointSquare square{};
    square.position = body.load(position);
    const Id rawSize = size ? body.load(*size) : code.constant(1.0f);
    square.size =
        body.extended(GLSLstd450NMin, body.number, {rawSize, code.constant(largestPoint)});
    const Id xy =
        body.emit(spv::Op::OpVectorShuffle, pair, {square.position, square.position, 0, 1});
    square.place = body.emit(spv::Op::OpFDiv, pair,
                             {xy, spread(body, body.part(square.position, body.number, 3))});
    const Id away = body.extended(GLSLstd450FAbs, pair, {square.place});
    const Id isNear = all(body, body.emit(spv::Op::OpFOrdLessThanEqual, booleans(body),
                                          {away, record.pair(body, PointMember::reach)}));
    const Id pixels = body.emit(
        spv::Op::OpFAdd, pair,
        {body.emit(spv::Op::OpFMul, pair, {square.place, record.pair(body, PointMember::half)}),
         record.pair(body, PointMember::centre)});
    square.width = snapped(body, GLSLstd450RoundEven, body.number, square.size, 1);
    const Id halfWidth = snapped(body, GLSLstd450Floor, body.number, square.width, 0.5f);
    square.lower =
        body.emit(spv::Op::OpFSub, pair,
                  {snapped(body, GLSLstd450RoundEven, pair, pixels, 1), spread(body, halfWidth)});
    const Id middle = twice(body, 0.5f); // a pixel's
    square.first = body.extended(GLSLstd450Ceil, pair,
                                 {body.emit(spv::Op::OpFSub, pair, {square.lower, middle})});
    const Id end = body.emit(
        spv::Op::OpFSub, pair,
        {body.emit(spv::Op::OpFAdd, pair, {square.lower, spread(body, square.width)}), middle});
    square.covers =
        all(body, body.emit(spv::Op::OpFOrdLessThan, booleans(body), {square.first, end}));
    square.isDrawn = body.both(isBeforeTheEye(body, square, rawSize), isNear);
    return square;
}

bool takesPointForms(const msl::EntryPoint& vertex) {
    // The forms number the vertices in their own way, and patches are no points.
    return vertex.attributes.empty() && vertex.patch == msl::PatchKind::none &&
           builtIn(Module(vertex.words), spv::BuiltIn::Position).has_value();
}

PointPair pointPair(const msl::EntryPoint& vertex, const msl::EntryPoint& fragment) {
    constexpr std::uint32_t mostLocations = 15; // of 16, which every device has
    PointPair pair{vertex, fragment, freeLocation(vertex, fragment)};
    Module code(vertex.words);
    const auto passed = linkConstants(code, fragment);
    pair.passesConstants = passed && pair.location + passed->variables.size() + 1 <= mostLocations;
    return pair;
}

Words vertexForm(const PointPair& pair, PointForm form) {
    Module code(pair.vertex.words);
    const VertexOutputs outputs{builtIn(code, spv::BuiltIn::Position).value(),
                                builtIn(code, spv::BuiltIn::PointSize)};
    PointBody body(code);
    const Id inner = renameMain(code);
    if (form == PointForm::points) {
        body.call(inner);
        endPoints(body, outputs, pair.location);
    } else {
        const Id corner = cornerOf(body);
        divideIndex(body, spv::BuiltIn::BaseVertex, cornersAPoint);
        body.call(inner);
        endQuads(body, outputs, pair.location, corner);
    }
    if (pair.passesConstants)
        passConstants(body, pair);
    body.finish(code.main());
    return code.finish(spv::ExecutionModel::Vertex);
}

Words fragmentForm(const PointPair& pair, PointForm form) {
    Module code(pair.fragment.words);
    const std::optional<Id> coordinates = builtIn(code, spv::BuiltIn::PointCoord);
    if (pair.passesConstants)
        takeConstants(code, pair.location + 1);
    PointBody body(code);
    if (coordinates && form == PointForm::points) {
        stretchCoordinates(body, *coordinates, pair.location);
    } else if (coordinates) {
        undecorate(code, *coordinates);
        code.decorate(*coordinates, spv::Decoration::Location, {pair.location});
        code.decorate(*coordinates, spv::Decoration::NoPerspective);
    }
    if (form == PointForm::quads)
        divideIndex(body, spv::BuiltIn::PrimitiveId, 2);
    const Id inner = renameMain(code);
    body.call(inner);
    if (pair.addsUp)
        keepColorFinite(body);
    body.finish(code.main());
    return code.finish(spv::ExecutionModel::Fragment);
}

} // namespace tarnwick::gpu
