// Single texels, and the sizes of textures.

#include "TarnwickMSL/Translation/Spirv/Atomics.h"
#include "TarnwickMSL/Translation/Spirv/ImageShapes.h"
#include "TarnwickMSL/Translation/Spirv/Images.h"
#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/ADT/StringSwitch.h>

namespace tarnwick::msl::spirv {

using namespace llvm;

// Sizes are integers of as many components as the image has axes, and its layers last.
Id Images::size(const Image& image, Id level) {
    body_.module.require(spv::Capability::ImageQuery);
    const ImageShape& shape = *image.shape;
    unsigned count = shape.axes + shape.isArray;
    Type* type = count == 1 ? body_.i32() : FixedVectorType::get(body_.i32(), count);
    bool hasLevels =
        !image.isStorage && !shape.isMultisample && shape.dimension != spv::Dim::Buffer;
    Id first = body_.constants.word(0);
    Id all = hasLevels ? body_.emit(spv::Op::OpImageQuerySizeLod, type, {load(image), first})
                       : body_.emit(spv::Op::OpImageQuerySize, type, {load(image)});
    return level == body_.constants.word(0) ? all : halved(type, all, level, shape.isArray);
}

// Computes a level's size from the first level's: a packaged CPU driver gives all invocations of a
// group the size of the level that the first of them queries.
Id Images::halved(Type* type, Id size, Id level, bool hasLayers) {
    Id levels = body_.splat(type, level);
    if (hasLayers)
        levels = body_.emit(spv::Op::OpCompositeInsert, type,
                            {body_.constants.word(0), levels, laneCount(type) - 1});
    Id smaller = body_.emit(spv::Op::OpShiftRightLogical, type, {size, levels});
    return body_.extended(GLSLstd450UMax, type, {smaller, body_.constants.integer(type, 1)});
}

Id Images::query(StringRef name, const CallInst& call) {
    const Image& of = image(call.getArgOperand(0), name == "levels" ? Need::levels : Need::wholes);
    const ImageShape& shape = *of.shape;
    body_.module.require(spv::Capability::ImageQuery);
    if (name == "levels") {
        if (shape.isMultisample)
            return body_.constants.word(1);
        return body_.emit(spv::Op::OpImageQueryLevels, body_.i32(), {load(of)});
    }
    if (name == "samples")
        return body_.emit(spv::Op::OpImageQuerySamples, body_.i32(), {load(of)});
    Id level = call.arg_size() > 1 ? body_.id(call.getArgOperand(1)) : body_.constants.word(0);
    Id all = size(of, level);
    if (shape.axes + shape.isArray == 1)
        return all;
    std::uint32_t axis = StringSwitch<std::uint32_t>(name)
                             .Case("width", 0)
                             .Case("height", 1)
                             .Case("depth", 2)
                             .Default(shape.axes);
    Id extent = body_.emit(spv::Op::OpCompositeExtract, body_.i32(), {all, axis});
    bool countsFaces = name == "layers" && of.texture->shape == TextureShape::cubeArray &&
                       shape.dimension != spv::Dim::Cube;
    return countsFaces ? body_.emit(spv::Op::OpUDiv, body_.i32(), {extent, body_.constants.word(6)})
                       : extent;
}

// The coordinates of a read, and whether the texture has that texel.
struct Images::Spot {
    Id at = 0, level = 0, inside = 0, sample = 0;
};

Images::Spot Images::spot(const Image& from, const CallInst& call) {
    const ImageShape& shape = *from.shape;
    Type* type = call.getArgOperand(1)->getType();
    const Value* given = call.arg_size() > 2 ? call.getArgOperand(2) : nullptr;
    bool hasLevels = !shape.isMultisample && !from.isStorage && given;
    bool isFirst = !hasLevels || (isa<Constant>(given) && cast<Constant>(given)->isNullValue());
    Spot spot;
    spot.at = body_.id(call.getArgOperand(1));
    spot.level = isFirst ? body_.constants.word(0) : body_.id(given);
    Id inLevels = 0;
    if (!isFirst) {
        Id levels = body_.emit(spv::Op::OpImageQueryLevels, body_.i32(), {load(from)});
        inLevels = body_.emit(spv::Op::OpULessThan, body_.i1(), {spot.level, levels});
        spot.level = body_.select(body_.i32(), inLevels, spot.level, body_.constants.word(0));
    }
    Type* boolean = shapedLike(type, body_.i1());
    spot.inside = body_.emit(spv::Op::OpULessThan, boolean, {spot.at, size(from, spot.level)});
    if (type->isVectorTy())
        spot.inside = body_.emit(spv::Op::OpAll, body_.i1(), {spot.inside});
    if (shape.isMultisample && given) {
        Id samples = body_.emit(spv::Op::OpImageQuerySamples, body_.i32(), {load(from)});
        spot.sample = body_.id(given);
        inLevels = body_.emit(spv::Op::OpULessThan, body_.i1(), {spot.sample, samples});
    }
    if (inLevels)
        spot.inside = body_.emit(spv::Op::OpLogicalAnd, body_.i1(), {inLevels, spot.inside});
    if (spot.sample)
        spot.sample = body_.select(body_.i32(), spot.inside, spot.sample, body_.constants.word(0));
    spot.at = body_.select(type, spot.inside, spot.at, body_.constants.null(type));
    return spot;
}

// A read outside the texture gives zero. The fetch itself is always inside.
Id Images::read(const CallInst& call) {
    const Image& from = texels(call, 2);
    const ImageShape& shape = *from.shape;
    Spot spot = this->spot(from, call);
    SmallVector<std::uint32_t, 4> operands{load(from), spot.at};
    if (shape.isMultisample)
        operands.append(
            {image_operand::sample, spot.sample ? spot.sample : body_.constants.word(0)});
    else if (!from.isStorage && shape.dimension != spv::Dim::Buffer)
        operands.append({image_operand::lod, spot.level});
    if (from.isStorage && !from.isAtomic)
        body_.module.require(spv::Capability::StorageImageReadWithoutFormat);
    Id texel = body_.emit(from.isStorage ? spv::Op::OpImageRead : spv::Op::OpImageFetch,
                          resultType(from, call), operands);
    Type* type = call.getType();
    return body_.select(type, spot.inside, result(from, call, texel), body_.constants.null(type));
}

Id Images::store(const CallInst& call) {
    const Image& to = texels(call, 3);
    if (!to.isStorage)
        throw CompilerFault("A texture is written that was not declared to be.");
    if (!to.isAtomic)
        body_.module.require(spv::Capability::StorageImageWriteWithoutFormat);
    Id texel = body_.id(call.getArgOperand(2));
    if (to.texture->component == TextureComponent::int_)
        texel = body_.emit(spv::Op::OpBitcast, body_.types.signedVector(), {texel});
    body_.act(spv::Op::OpImageWrite, {load(to), body_.id(call.getArgOperand(1)), texel});
    return 0;
}

// An atomic operation has no effect outside the texture (robustImageAccess) and gives zero there.
Id Images::changeTexel(StringRef op, const CallInst& call) {
    const Image& of = texels(call, call.arg_size());
    Id component = componentType(of.texture->component);
    bool isSigned = of.texture->component == TextureComponent::int_;
    if (of.texture->component == TextureComponent::ulong_)
        body_.module.require(spv::Capability::Int64Atomics);
    auto operand = [&](unsigned n) {
        Id value = body_.id(call.getArgOperand(n));
        return isSigned ? body_.emit(spv::Op::OpBitcast, component, {value}) : value;
    };
    Id scope = body_.constants.word(static_cast<std::uint32_t>(spv::Scope::Device));
    Id relaxed = body_.constants.word(0);
    Id inside = spot(of, call).inside;
    Id texel = body_.emit(spv::Op::OpImageTexelPointer,
                          body_.module.pointer(spv::StorageClass::Image, component),
                          {of.variable, body_.id(call.getArgOperand(1)), relaxed});
    if (op == "store") {
        body_.act(spv::Op::OpAtomicStore, {texel, scope, relaxed, operand(2)});
        return 0;
    }
    Id before = 0;
    if (op == "load")
        before = body_.emit(spv::Op::OpAtomicLoad, component, {texel, scope, relaxed});
    else if (op == "compare_exchange")
        before = body_.emit(spv::Op::OpAtomicCompareExchange, component,
                            {texel, scope, relaxed, relaxed, operand(3), operand(2)});
    else if (auto change = atomicChange(op, isSigned))
        before = body_.emit(*change, component, {texel, scope, relaxed, operand(2)});
    else
        throw CompilerFault("The atomic operation '" + op.str() + "' is not known.");
    Type* type = call.getType();
    Id value = isSigned ? body_.emit(spv::Op::OpBitcast, type, {before}) : before;
    return body_.select(type, inside, value, body_.constants.null(type));
}

} // namespace tarnwick::msl::spirv
