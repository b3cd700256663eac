#include "TarnwickRender/Pictures/LoopBlend.h"

#include "TarnwickRender/Pictures/FramePipeline.h"

namespace tarnwick {
namespace {

constexpr std::string_view source = R"metal(#include <metal_stdlib>
using namespace metal;
struct BOut { float4 position [[position]]; float2 uv; };
vertex BOut lb_vertex(uint vid [[vertex_id]]) {
    float2 c = float2(vid & 1, vid >> 1);
    BOut o;
    o.position = float4(c * 2.0 - 1.0, 0.0, 1.0);
    o.uv = float2(c.x, 1.0 - c.y);
    return o;
}
fragment float4 lb_fragment(BOut in [[stage_in]], texture2d<float> from [[texture(0)]], texture2d<float> to [[texture(1)]],
                            constant float& weight [[buffer(0)]]) {
    constexpr sampler s(filter::nearest, address::clamp_to_edge);
    return mix(to.sample(s, in.uv), from.sample(s, in.uv), weight);
}
)metal";

} // namespace

LoopBlend::LoopBlend(gpu::Device& device, gpu::PixelFormat format)
    : pipeline_(framePipeline(device, source, "lb_vertex", "lb_fragment", {.format = format})) {}

void LoopBlend::draw(gpu::RenderCommandEncoder& encoder, const gpu::Texture& from,
                     const gpu::Texture& to, float weight) const {
    encoder.setRenderPipelineState(*pipeline_);
    encoder.setFragmentTexture(&from, 0);
    encoder.setFragmentTexture(&to, 1);
    encoder.setFragmentBytes(&weight, sizeof weight, 0);
    encoder.drawPrimitives(gpu::PrimitiveType::triangleStrip, 0, 4);
}

} // namespace tarnwick
