// Tarnwick's icon
//
// A flame above a lake. scripts/icon draws it in the sizes of desktop/icons.

constant float horizon = 0.36;

// Half of the flame's width at the height t, 0 at its foot and 1 at its tip.
float halfWidth(float t) {
    return 0.62 * sqrt(saturate(t)) * pow(saturate(1.0 - t), 1.1);
}

// 0 outside the flame, up to 1 in its middle. The foot is at (0, 0), the tip at (0, 1).
float flame(float2 at) {
    float bend = 0.05 * sin(6.0 * at.y) * at.y;
    float half_ = halfWidth(at.y);
    return half_ <= 0.0 ? 0.0 : saturate(1.0 - abs(at.x + bend) / half_);
}

float3 flameColour(float depth, float height) {
    float3 rim = float3(1.0, 0.36, 0.07), middle = float3(1.0, 0.68, 0.16);
    float3 heart = float3(1.0, 0.96, 0.78);
    float3 colour = mix(rim, middle, smoothstep(0.0, 0.4, depth));
    return mix(colour, heart, smoothstep(0.35, 0.8, depth) * smoothstep(0.95, 0.25, height));
}

float3 sky(float2 at) {
    float3 colour = mix(float3(0.15, 0.30, 0.46), float3(0.04, 0.07, 0.17), smoothstep(0.3, 1.0, at.y));
    float glow = exp(-7.0 * length_squared(at - float2(0.5, 0.55)));
    return colour + glow * float3(0.42, 0.17, 0.05);
}

float3 lake(float2 at) {
    float depth = (horizon - at.y) / horizon;
    float3 colour = mix(float3(0.12, 0.27, 0.40), float3(0.03, 0.08, 0.17), depth);
    float wave = 0.5 + 0.5 * cos(depth * 22.0);
    float width = 0.20 * sqrt(saturate(1.05 - depth)) * (0.45 + 0.55 * wave);
    float light = smoothstep(width, width * 0.55, abs(at.x - 0.5)) * smoothstep(0.15, 0.6, wave);
    colour = mix(colour, float3(1.0, 0.56, 0.16), light * mix(0.95, 0.5, depth));
    return colour + 0.10 * exp(-60.0 * depth * depth);
}

// The distance to a square with round corners, negative inside.
float tile(float2 at) {
    float2 corner = abs(at - 0.5) - 0.46 + 0.20;
    return length(max(corner, 0.0)) + min(max(corner.x, corner.y), 0.0) - 0.20;
}

float4 colourAt(float2 at) {
    if (tile(at) > 0.0)
        return float4(0.0);
    float3 colour = at.y > horizon ? sky(at) : lake(at);
    float2 inFlame = (at - float2(0.5, horizon + 0.02)) / 0.56;
    float depth = flame(inFlame);
    if (depth > 0.0)
        colour = flameColour(depth, inFlame.y);
    return float4(saturate(colour), 1.0);
}

// The mean of 8 x 8 points of the pixel: an icon of 16 pixels needs clean edges.
float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float4 sum = float4(0.0);
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x)
            sum += colourAt(uv + (float2(x, y) - 3.5) / 8.0 / u.resolution);
    return sum / 64.0;
}
