#include "TarnwickGPU/Points/PointKernel.h"

#include "TarnwickGPU/Points/PointColors.h"
#include "TarnwickGPU/Points/PointConstants.h"
#include "TarnwickGPU/Points/PointForms.h"
#include "TarnwickSpirv/Interface.h"
#include "TarnwickSpirv/Link.h"
#include "TarnwickSpirv/Rewriting.h"

#include <algorithm>
#include <initializer_list>

namespace tarnwick::gpu {

using namespace spirv;

namespace {

constexpr std::uint32_t wordsOfADraw = 4, instancesOfADraw = 1; // VkDrawIndirectCommand's

// Twice the range of halves: adding such a colour to any finite half still overflows to infinity.
constexpr float mostColor = 131072;

bool hasOnly(const Module& code, std::initializer_list<spv::BuiltIn> allowed) {
    bool only = true;
    eachInstruction(code.annotations, [&](const Instruction& each) {
        const std::size_t at = each.op == spv::Op::OpMemberDecorate ? 2 : 1;
        if (at + 1 >= each.operands.size() ||
            each.operands[at] != static_cast<std::uint32_t>(spv::Decoration::BuiltIn))
            return;
        const auto builtIn = static_cast<spv::BuiltIn>(each.operands[at + 1]);
        only = only && each.op == spv::Op::OpDecorate &&
               std::find(allowed.begin(), allowed.end(), builtIn) != allowed.end();
    });
    return only;
}

void makeLocationsPrivate(Module& code, spv::StorageClass storage) {
    for (const auto& [location, variable] : locations(code, storage))
        makePrivate(code, variable);
}

std::optional<Id> takeBuiltIn(Module& code, spv::BuiltIn builtIn) {
    const auto variable = spirv::builtIn(code, builtIn);
    if (variable)
        makePrivate(code, *variable);
    return variable;
}

// The vertex function inside the kernel.
struct VertexPart {
    Id function = 0, position = 0;
    std::optional<Id> size, vertex, base;
    std::map<std::uint32_t, Id> outputs;
};

std::optional<VertexPart> vertexPart(Module& code) {
    using spv::BuiltIn;
    if (!hasOnly(code, {BuiltIn::Position, BuiltIn::PointSize, BuiltIn::VertexIndex,
                        BuiltIn::InstanceIndex, BuiltIn::BaseVertex, BuiltIn::BaseInstance}))
        return std::nullopt;
    VertexPart part;
    part.outputs = locations(code, spv::StorageClass::Output);
    makeLocationsPrivate(code, spv::StorageClass::Output);
    const auto position = takeBuiltIn(code, BuiltIn::Position);
    if (!position || !locations(code, spv::StorageClass::Input).empty())
        return std::nullopt;
    part.position = *position;
    part.size = takeBuiltIn(code, BuiltIn::PointSize);
    part.vertex = takeBuiltIn(code, BuiltIn::VertexIndex);
    part.base = takeBuiltIn(code, BuiltIn::BaseVertex);
    for (const BuiltIn instance : {BuiltIn::InstanceIndex, BuiltIn::BaseInstance})
        takeBuiltIn(code, instance);
    part.function = renameMain(code);
    return part;
}

// The fragment function inside the kernel, by its ids there.
struct FragmentPart {
    Id function = 0, color = 0, discarded = 0;
    std::optional<Id> constants; // computes the values that are the same at each pixel
    std::optional<Id> coordinates, position;
    std::map<std::uint32_t, Id> inputs;
};

// Kernels have no interpolation. Loops are excluded since the packaged CPU driver ends an
// invocation silently after 65,535 iterations of all its loops, which the pixels of a point would
// share.
bool interpolatesOrLoops(const Module& code) {
    bool does = false;
    eachInstruction(code.functions, [&](const Instruction& each) {
        does = does || each.op == spv::Op::OpLoopMerge;
        if (each.op == spv::Op::OpExtInst && each.operands[3] >= GLSLstd450InterpolateAtCentroid &&
            each.operands[3] <= GLSLstd450InterpolateAtOffset)
            does = true;
    });
    return does;
}

// Instead of discarding the pixel, the kernel stores that it adds nothing.
Id noteDiscards(Module& code) {
    const Id boolean = code.type(spv::Op::OpTypeBool, {});
    const Id discarded = code.variable(spv::StorageClass::Private, boolean);
    const Id yes = code.truth();
    Words changed;
    eachInstruction(code.functions, [&](const Instruction& each) {
        if (each.op == spv::Op::OpDemoteToHelperInvocation)
            append(changed, spv::Op::OpStore, {discarded, yes});
        else
            append(changed, each.op, each.operands);
    });
    code.functions = std::move(changed);
    std::erase(code.capabilities, spv::Capability::DemoteToHelperInvocation);
    return discarded;
}

std::optional<FragmentPart> fragmentPart(Module& kernel, const msl::EntryPoint& fragment) {
    Module code(fragment.words);
    const auto outputs = locations(code, spv::StorageClass::Output);
    if (!hasOnly(code, {spv::BuiltIn::FragCoord, spv::BuiltIn::PointCoord}) ||
        interpolatesOrLoops(code) || outputs.size() != 1 || !outputs.contains(0) ||
        !secondSources(code).empty() || pointee(code, outputs.at(0)) != code.vector(code.real(), 4))
        return std::nullopt;
    FragmentPart part{.color = outputs.at(0)};
    if (const auto constants = partConstants(code))
        part.constants = constants->function;
    part.inputs = locations(code, spv::StorageClass::Input);
    makeLocationsPrivate(code, spv::StorageClass::Input);
    makeLocationsPrivate(code, spv::StorageClass::Output);
    part.coordinates = takeBuiltIn(code, spv::BuiltIn::PointCoord);
    part.position = takeBuiltIn(code, spv::BuiltIn::FragCoord);
    part.discarded = noteDiscards(code);
    part.function = renameMain(code);
    auto ids = link(kernel, code);
    if (!ids)
        return std::nullopt;
    for (Id* id : {&part.function, &part.color, &part.discarded})
        *id = ids->at(*id);
    for (std::optional<Id>* id : {&part.constants, &part.coordinates, &part.position})
        if (*id)
            **id = ids->at(**id);
    for (auto& [location, variable] : part.inputs)
        variable = ids->at(variable);
    return part;
}

class Kernel {
  public:
    Kernel(Module& code, const PointKernelNeeds& needs, const VertexPart& vertex,
           const std::optional<FragmentPart>& fragment)
        : code_(code), needs_(needs), vertex_(vertex), fragment_(fragment), body_(code),
          record_(code), draws_(numbersBuffer(code, body_.word, 4, needs.drawsBinding)) {}

    void write();

  private:
    Id one(PointMember member, std::uint32_t lane) {
        return body_.part(record_.pair(body_, member), body_.number, lane);
    }
    Id word(std::uint32_t value) { return code_.constant(body_.word, value); }
    Id add(Id left, Id right) { return body_.emit(spv::Op::OpFAdd, body_.number, {left, right}); }
    Id times(Id left, Id right) { return body_.emit(spv::Op::OpFMul, body_.number, {left, right}); }
    Id sum(Id left, Id right) { return body_.emit(spv::Op::OpIAdd, body_.word, {left, right}); }
    Id lane(Id vector, std::uint32_t at) { return body_.part(vector, body_.number, at); }
    Id current(Id variable, Id type) { return body_.emit(spv::Op::OpLoad, type, {variable}); }
    Id isLess(Id left, Id right) {
        return body_.emit(spv::Op::OpFOrdLessThan, body_.boolean, {left, right});
    }

    void runVertex(Id index);
    void drawPoint(Id index, const PointSquare& square);
    void noteDraw(Id draw);
    void noteBlock(Id index, const PointSquare& square);
    void handOver();
    void splat(const PointSquare& square);
    void shade(const PointSquare& square, Id x, Id y);
    void addToSums(Id x, Id y);
    Id factor(BlendFactor factor, Id alpha);

    Module& code_;
    const PointKernelNeeds& needs_;
    const VertexPart& vertex_;
    const std::optional<FragmentPart>& fragment_;
    PointBody body_;
    PointRecordVariable record_;
    Id draws_;
    std::optional<SumNumbers> sums_;
};

void Kernel::runVertex(Id index) {
    const Id first = record_.word(body_, PointMember::firstVertex);
    if (vertex_.vertex)
        body_.store(*vertex_.vertex, sum(first, index));
    if (vertex_.base)
        body_.store(*vertex_.base, first);
    body_.call(vertex_.function);
}

void Kernel::noteDraw(Id draw) {
    const Id start = body_.emit(spv::Op::OpIMul, body_.word, {draw, word(wordsOfADraw)});
    const Id place = body_.placeIn(draws_, body_.word, sum(start, word(instancesOfADraw)));
    body_.store(place, word(1));
}

void Kernel::noteBlock(Id index, const PointSquare& square) {
    const Id size = word(pointsABlock);
    const Id count = record_.word(body_, PointMember::count);
    const Id blocks =
        body_.emit(spv::Op::OpUDiv, body_.word, {sum(count, word(pointsABlock - 1)), size});
    const Id isLarge = isLess(one(PointMember::sizes, 1), square.size);
    const Id list = body_.emit(spv::Op::OpSelect, body_.word, {isLarge, blocks, word(0)});
    const Id block = body_.emit(spv::Op::OpUDiv, body_.word, {index, size});
    noteDraw(sum(sum(list, block), word(firstBlockDraw)));
}

// The vertex function's outputs are the fragment function's inputs, the same at every pixel.
void Kernel::handOver() {
    for (const auto& [location, input] : fragment_->inputs) {
        const auto output = vertex_.outputs.find(location);
        const Id type = pointee(code_, input);
        const bool fits = output != vertex_.outputs.end() && pointee(code_, output->second) == type;
        body_.store(input, fits ? current(output->second, type) : code_.null(type));
    }
    if (fragment_->constants)
        body_.call(*fragment_->constants);
}

void Kernel::shade(const PointSquare& square, Id x, Id y) {
    const Id middle = code_.constant(0.5f);
    const Id at =
        body_.emit(spv::Op::OpCompositeConstruct, body_.numbers2, {add(x, middle), add(y, middle)});
    if (fragment_->coordinates) {
        const Id inside = body_.emit(spv::Op::OpFSub, body_.numbers2, {at, square.lower});
        const Id size =
            body_.emit(spv::Op::OpCompositeConstruct, body_.numbers2, {square.width, square.width});
        body_.store(*fragment_->coordinates,
                    body_.emit(spv::Op::OpFDiv, body_.numbers2, {inside, size}));
    }
    if (fragment_->position) {
        const Id w = body_.emit(spv::Op::OpFDiv, body_.number,
                                {code_.constant(1.0f), lane(square.position, 3)});
        const Id depth = add(one(PointMember::depth, 0),
                             times(one(PointMember::depth, 1), times(lane(square.position, 2), w)));
        body_.store(*fragment_->position,
                    body_.emit(spv::Op::OpCompositeConstruct, body_.numbers4, {at, depth, w}));
    }
    body_.store(fragment_->discarded, code_.null(body_.boolean));
    body_.call(fragment_->function);
}

Id Kernel::factor(BlendFactor factor, Id alpha) {
    if (factor == BlendFactor::zero)
        return code_.constant(0.0f);
    if (factor == BlendFactor::one)
        return code_.constant(1.0f);
    if (factor == BlendFactor::sourceAlpha)
        return alpha;
    return body_.emit(spv::Op::OpFSub, body_.number, {code_.constant(1.0f), alpha});
}

// Adds the fragment's colour unless it is zero or the pixel was discarded.
void Kernel::addToSums(Id x, Id y) {
    const Id color = finiteColor(body_, current(fragment_->color, body_.numbers4));
    const Id rgb = factor(needs_.color.sourceRGB, lane(color, 3));
    const Id alpha = factor(needs_.color.sourceAlpha, lane(color, 3));
    const Id factors =
        body_.emit(spv::Op::OpCompositeConstruct, body_.numbers4, {rgb, rgb, rgb, alpha});
    const Id scaled = body_.emit(spv::Op::OpFMul, body_.numbers4, {color, factors});
    const Id most = code_.constant(mostColor), least = code_.constant(-mostColor);
    const Id value =
        body_.extended(GLSLstd450FClamp, body_.numbers4,
                       {scaled, code_.composite(body_.numbers4, {least, least, least, least}),
                        code_.composite(body_.numbers4, {most, most, most, most})});
    const Id lanes = code_.vector(body_.boolean, 4);
    const Id zero = code_.null(body_.numbers4);
    const Id differs = body_.emit(spv::Op::OpFOrdNotEqual, lanes, {value, zero});
    const Id isSeen = body_.emit(spv::Op::OpAny, body_.boolean, {differs});
    const Id isKept = body_.emit(spv::Op::OpLogicalNot, body_.boolean,
                                 {current(fragment_->discarded, body_.boolean)});
    const Id adds = body_.label(), done = body_.label();
    body_.branchIf(body_.both(isSeen, isKept), adds, done);
    body_.begin(adds);
    const Id whole = body_.emit(spv::Op::OpVectorTimesScalar, body_.numbers4,
                                {value, one(PointMember::rounding, 0)});
    auto integer = [&](Id number) {
        return body_.emit(spv::Op::OpConvertFToU, body_.word, {number});
    };
    const Id row = body_.emit(spv::Op::OpIMul, body_.word,
                              {integer(y), record_.word(body_, PointMember::rowPixels)});
    const Id pixel = body_.emit(spv::Op::OpIMul, body_.word, {sum(row, integer(x)), word(4)});
    for (std::uint32_t at = 0; at < 4; ++at)
        sums_->add(sum(pixel, word(at)), lane(whole, at));
    body_.branch(done);
    body_.begin(done);
}

// One loop over the pixels of the square inside the scissor.
void Kernel::splat(const PointSquare& square) {
    const Id pair = body_.numbers2;
    const Id middle = code_.constant(0.5f);
    const Id from = body_.extended(GLSLstd450FMax, pair,
                                   {square.first, record_.pair(body_, PointMember::from)});
    auto end = [&](std::uint32_t axis) {
        const Id edge = add(lane(square.lower, axis), square.width);
        const Id behind =
            body_.extended(GLSLstd450Ceil, body_.number,
                           {body_.emit(spv::Op::OpFSub, body_.number, {edge, middle})});
        return body_.extended(GLSLstd450FMin, body_.number, {behind, one(PointMember::to, axis)});
    };
    const Id left = lane(from, 0), endX = end(0), endY = end(1);
    const Id zero = code_.null(body_.number);
    const Id x = body_.local(body_.number, zero), y = body_.local(body_.number, zero);
    const Id isWide = isLess(left, endX);
    body_.store(x, left);
    body_.store(y, body_.emit(spv::Op::OpSelect, body_.number, {isWide, lane(from, 1), endY}));
    const Id header = body_.label(), test = body_.label(), round = body_.label(),
             next = body_.label(), done = body_.label();
    body_.branch(header);
    body_.begin(header);
    body_.act(spv::Op::OpLoopMerge, {done, next, 0});
    body_.branch(test);
    body_.begin(test);
    const Id atX = current(x, body_.number), atY = current(y, body_.number);
    body_.act(spv::Op::OpBranchConditional, {isLess(atY, endY), round, done});
    body_.begin(round);
    shade(square, atX, atY);
    addToSums(atX, atY);
    body_.branch(next);
    body_.begin(next);
    const Id pixel = code_.constant(1.0f);
    const Id right = add(atX, pixel);
    const Id isInside = isLess(right, endX);
    body_.store(x, body_.emit(spv::Op::OpSelect, body_.number, {isInside, right, left}));
    body_.store(y, body_.emit(spv::Op::OpSelect, body_.number, {isInside, atY, add(atY, pixel)}));
    body_.branch(header);
    body_.begin(done);
}

void Kernel::drawPoint(Id index, const PointSquare& square) {
    if (!fragment_)
        return noteBlock(index, square);
    sums_.emplace(code_, body_, needs_.sumsBinding, needs_.sumForm);
    const Id isSmall = body_.emit(spv::Op::OpFOrdLessThanEqual, body_.boolean,
                                  {square.size, one(PointMember::sizes, 0)});
    const Id small = body_.label(), large = body_.label(), done = body_.label();
    body_.act(spv::Op::OpSelectionMerge, {done, 0});
    body_.act(spv::Op::OpBranchConditional, {isSmall, small, large});
    body_.begin(small);
    noteDraw(word(sumsDraw));
    handOver();
    splat(square);
    body_.branch(done);
    body_.begin(large);
    noteBlock(index, square);
    body_.branch(done);
    body_.begin(done);
}

void Kernel::write() {
    const Id triple = code_.vector(body_.word, 3);
    const Id thread =
        code_.builtIn(spv::BuiltIn::GlobalInvocationId, spv::StorageClass::Input, triple);
    const Id index = body_.part(body_.load(thread), body_.word, 0);
    const Id isPoint = body_.emit(spv::Op::OpULessThan, body_.boolean,
                                  {index, record_.word(body_, PointMember::count)});
    const Id works = body_.label(), done = body_.label();
    body_.branchIf(isPoint, works, done);
    body_.begin(works);
    runVertex(index);
    const PointSquare square = pointSquare(body_, record_, vertex_.position, vertex_.size);
    const Id draws = body_.label(), drawn = body_.label();
    body_.branchIf(body_.both(square.isDrawn, square.covers), draws, drawn);
    body_.begin(draws);
    drawPoint(index, square);
    body_.branch(drawn);
    body_.begin(drawn);
    body_.branch(done);
    body_.begin(done);
    body_.finish(code_.main());
    code_.executionMode(spv::ExecutionMode::LocalSize, {pointsAThreadgroup, 1, 1});
}

} // namespace

std::optional<Words> pointKernel(const PointKernelNeeds& needs) {
    Module code(needs.vertex->words);
    const auto vertex = vertexPart(code);
    if (!vertex)
        return std::nullopt;
    std::optional<FragmentPart> fragment;
    if (needs.fragment) {
        fragment = fragmentPart(code, *needs.fragment);
        if (!fragment)
            return std::nullopt;
    }
    Kernel(code, needs, *vertex, fragment).write();
    return code.finish(spv::ExecutionModel::GLCompute);
}

} // namespace tarnwick::gpu
