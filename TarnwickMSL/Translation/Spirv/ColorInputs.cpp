// The colours so far, which a fragment function takes as arguments (Metal Shading Language 3.1,
// 5.2.3.4). They are texels of a texture that the host binds: the target itself, or a copy of it.

#include "TarnwickMSL/Translation/Spirv/Images.h"
#include "TarnwickMSL/Translation/Spirv/Stage.h"

namespace tarnwick::msl::spirv {

using namespace llvm;

static TextureComponent componentOf(const CallInst& call) {
    StringRef suffix = call.getCalledFunction()->getName().rsplit('.').second;
    return suffix == "f32"   ? TextureComponent::float_
           : suffix == "s32" ? TextureComponent::int_
                             : TextureComponent::uint_;
}

Id Images::colorSoFar(const CallInst& call) {
    auto index =
        static_cast<std::uint32_t>(cast<ConstantInt>(call.getArgOperand(0))->getZExtValue());
    TextureComponent component = componentOf(call);
    auto& [type, variable] = colors_[{index, static_cast<std::uint32_t>(component)}];
    if (!variable) {
        type = body_.module.type(spv::Op::OpTypeImage,
                                 {componentType(component),
                                  static_cast<std::uint32_t>(spv::Dim::Dim2D), 0, 0, 0, 1,
                                  static_cast<std::uint32_t>(spv::ImageFormat::Unknown)});
        variable = body_.module.variable(spv::StorageClass::UniformConstant, type);
        body_.module.bind(variable, nextBinding_);
        resources_.push_back({.kind = ResourceKind::colorInput,
                              .index = index,
                              .binding = nextBinding_++,
                              .shape = TextureShape::d2,
                              .component = component});
    }
    Type* four = FixedVectorType::get(body_.f32(), 4);
    Id place = readBuiltIn(body_, spv::BuiltIn::FragCoord, four);
    Id pixel = body_.emit(spv::Op::OpVectorShuffle, FixedVectorType::get(body_.f32(), 2),
                          {place, place, 0, 1});
    Id at = body_.emit(spv::Op::OpConvertFToU, FixedVectorType::get(body_.i32(), 2), {pixel});
    Id image = body_.emit(spv::Op::OpLoad, type, {variable});
    bool isSigned = component == TextureComponent::int_;
    Id texel = body_.emit(spv::Op::OpImageFetch,
                          isSigned ? body_.types.signedVector() : body_.types.of(call.getType()),
                          {image, at, image_operand::lod, body_.constants.word(0)});
    return isSigned ? body_.emit(spv::Op::OpBitcast, call.getType(), {texel}) : texel;
}

} // namespace tarnwick::msl::spirv
