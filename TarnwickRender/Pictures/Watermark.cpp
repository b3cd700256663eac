#include "TarnwickRender/Pictures/Watermark.h"

#include "TarnwickCore/Movies/WatermarkPlacement.h"
#include "TarnwickRender/Pictures/FramePipeline.h"

namespace tarnwick {
namespace {

// In the coordinates of the square, [-1, 1], y up. Colours are premultiplied. Layers from the
// front: a light rim, the fire inside, a dark ring, the glow around.
constexpr std::string_view source = R"metal(#include <metal_stdlib>
using namespace metal;
struct WMUniforms { float4 rect; float2 target; float opacity; float pad; };
struct WOut { float4 position [[position]]; float2 p; };
vertex WOut wm_vertex(uint vid [[vertex_id]], constant WMUniforms& w [[buffer(0)]]) {
    float2 c = float2(vid & 1, vid >> 1);
    WOut o;
    o.position = float4((w.rect.xy + c * w.rect.z) / w.target * 2.0 - 1.0, 0.0, 1.0);
    o.p = c * 2.0 - 1.0;
    return o;
}
constant float hw = 0.36;
constant float base = -0.56;
constant float wall = 0.10;
constant float top = 0.56 - hw;

float arch(float2 p) {
    return p.y > top ? length(float2(p.x, p.y - top)) - hw : max(abs(p.x) - hw, base - p.y);
}
float3 fire(float2 p) {
    float t = (p.y - base) / (top + hw - base);
    float across = abs(p.x) / hw;
    float heat = clamp(1.0 - 0.75 * t, 0.0, 1.0) * (1.0 - 0.55 * across * across);
    float3 c = mix(float3(0.88, 0.26, 0.05), float3(1.0, 0.68, 0.20), smoothstep(0.30, 0.70, heat));
    return mix(c, float3(1.0, 0.97, 0.84), smoothstep(0.75, 1.0, heat));
}
float4 under(float4 front, float3 color, float coverage) {
    return front + (1.0 - front.a) * float4(color, 1.0) * coverage;
}
fragment float4 wm_fragment(WOut in [[stage_in]], constant WMUniforms& w [[buffer(0)]]) {
    float aa = 2.0 / w.rect.z;
    float d = arch(in.p);
    float inside = 1.0 - smoothstep(-aa, aa, d);
    float outside = smoothstep(wall - aa, wall + aa, d);
    float rim = 1.0 - smoothstep(0.03 - aa, 0.03 + aa, abs(d));
    float4 c = under(float4(0.0), float3(1.0, 0.953, 0.871), 0.55 * rim);
    c = under(c, fire(in.p), inside);
    c = under(c, float3(0.02, 0.012, 0.015), 0.78 * (1.0 - outside));
    c = under(c, float3(1.0, 0.45, 0.10), 0.45 * outside * exp(-7.0 * max(d - wall, 0.0)));
    return c * w.opacity;
}
)metal";

} // namespace

Watermark::Watermark(gpu::Device& device, gpu::PixelFormat format)
    : pipeline_(
          framePipeline(device, source, "wm_vertex", "wm_fragment", premultipliedOver(format))) {}

void Watermark::draw(gpu::RenderCommandEncoder& encoder, std::int64_t width,
                     std::int64_t height) const {
    const auto [x, y, side] = WatermarkPlacement::rect(width, height);
    const WMUniforms uniforms{.rect = {x, y, side},
                              .target = {static_cast<float>(width), static_cast<float>(height)},
                              .opacity = opacity};
    encoder.setRenderPipelineState(*pipeline_);
    encoder.setVertexBytes(&uniforms, sizeof uniforms, 0);
    encoder.setFragmentBytes(&uniforms, sizeof uniforms, 0);
    encoder.drawPrimitives(gpu::PrimitiveType::triangleStrip, 0, 4);
}

} // namespace tarnwick
