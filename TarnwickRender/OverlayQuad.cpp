#include "TarnwickRender/OverlayQuad.h"

#include "TarnwickRender/Pictures/FramePipeline.h"

namespace tarnwick {
namespace {

constexpr std::string_view source = R"metal(#include <metal_stdlib>
using namespace metal;
struct OOut { float4 position [[position]]; float2 uv; };
vertex OOut ov_vertex(uint vid [[vertex_id]]) {
    float2 c = float2(vid & 1, vid >> 1);
    OOut o;
    o.position = float4(c * 2.0 - 1.0, 0.0, 1.0);
    o.uv = float2(c.x, 1.0 - c.y);
    return o;
}
fragment float4 ov_fragment(OOut in [[stage_in]], texture2d<float> tex [[texture(0)]]) {
    constexpr sampler s(filter::linear, address::clamp_to_edge);
    return tex.sample(s, in.uv);
}
)metal";

} // namespace

OverlayQuad::OverlayQuad(gpu::Device& device, gpu::PixelFormat format)
    : pipeline_(
          framePipeline(device, source, "ov_vertex", "ov_fragment", premultipliedOver(format))) {}

void OverlayQuad::draw(gpu::RenderCommandEncoder& encoder, const gpu::Texture& overlay) const {
    encoder.setRenderPipelineState(*pipeline_);
    encoder.setFragmentTexture(&overlay, 0);
    encoder.drawPrimitives(gpu::PrimitiveType::triangleStrip, 0, 4);
}

} // namespace tarnwick
