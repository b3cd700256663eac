#include "TarnwickMSL/Translation/Spirv/ImageShapes.h"

#include "TarnwickMSL/Translation/TranslationError.h"

#include <array>

namespace tarnwick::msl::spirv {

// clang-format off
static constexpr std::array shapes{
    ImageShape{TextureShape::buffer,             spv::Dim::Buffer, false, false, 1, spv::Capability::SampledBuffer, spv::Capability::ImageBuffer},
    ImageShape{TextureShape::d1,                 spv::Dim::Dim1D,  false, false, 1, spv::Capability::Sampled1D, spv::Capability::Image1D},
    ImageShape{TextureShape::d1Array,            spv::Dim::Dim1D,  true,  false, 1, spv::Capability::Sampled1D, spv::Capability::Image1D},
    ImageShape{TextureShape::d2,                 spv::Dim::Dim2D,  false, false, 2},
    ImageShape{TextureShape::d2Array,            spv::Dim::Dim2D,  true,  false, 2},
    ImageShape{TextureShape::d2Multisample,      spv::Dim::Dim2D,  false, true,  2, std::nullopt, spv::Capability::StorageImageMultisample},
    ImageShape{TextureShape::d2MultisampleArray, spv::Dim::Dim2D,  true,  true,  2, std::nullopt, spv::Capability::ImageMSArray},
    ImageShape{TextureShape::d3,                 spv::Dim::Dim3D,  false, false, 3},
    ImageShape{TextureShape::cube,               spv::Dim::Cube,   false, false, 2},
    ImageShape{TextureShape::cubeArray,          spv::Dim::Cube,   true,  false, 2, spv::Capability::SampledCubeArray, spv::Capability::ImageCubeArray},
};
// clang-format on

const ImageShape& shapeOf(TextureShape wanted) {
    for (const ImageShape& shape : shapes)
        if (shape.shape == wanted)
            return shape;
    throw CompilerFault("A texture has a shape that is not known.");
}

} // namespace tarnwick::msl::spirv
