// Poured copper
// The height chooses between ink and verdigris; how far the flow was pushed brings out the metal.

// @param speed 0.35 0.0 1.5 How fast the tide runs
// @param scale 1.6 0.6 4.0 How much of the tide is seen
// @param warp 1.0 0.0 2.0 How far the flow bends itself
// @param hue 0.0 0.0 1.0 Turns the metal from copper to silver

// A number that looks random, and is the same for the same cell on every GPU.
float hash(float2 cell) {
    float3 q = fract(float3(cell.xyx) * 0.1031);
    q += dot(q, q.yzx + 33.33);
    return fract((q.x + q.y) * q.z);
}

// Value noise: random numbers at whole coordinates, blended by a curve that arrives with slope and
// curvature 0, so that no grid shows in the light.
float noise(float2 q) {
    float2 cell = floor(q);
    float2 f = q - cell;
    float2 s = f * f * f * (f * (f * 6.0 - 15.0) + 10.0);
    float2 e = float2(0.0, 1.0);
    return mix(mix(hash(cell), hash(cell + e.yx), s.x),
               mix(hash(cell + e.xy), hash(cell + e.yy), s.x), s.y);
}

// Octaves of noise, each half as strong and about twice as fine as the last. Turning the plane
// between octaves keeps their grids from lining up.
float fbm(float2 q, int octaves) {
    const float2x2 octave = float2x2(float2(1.60, 1.20), float2(-1.20, 1.60));
    float sum = 0.0, weight = 0.5;
    for (int i = 0; i < octaves; i++) {
        sum += weight * noise(q);
        q = octave * q + 17.3;
        weight *= 0.5;
    }
    return sum;
}

// The height of the tide at a place, and what it went through on the way, for the colours.
struct Tide {
    float height;
    float2 first;  // the first push
    float2 second; // the second
};

// Each push is a pair of noises, which drift at their own pace; the second pair is asked for where
// the first one leads.
Tide tideAt(float2 q, float t, float warp, int detail) {
    Tide tide;
    tide.first = float2(fbm(q + float2(0.0, 0.13 * t), 3),
                        fbm(q + float2(5.2, 1.3 - 0.11 * t), 3));
    float2 r = q + 2.4 * warp * (tide.first - 0.5);
    tide.second = float2(fbm(r + float2(1.7 + 0.09 * t, 9.2), 3),
                         fbm(r + float2(8.3, 2.8 + 0.12 * t), 3));
    tide.height = fbm(q + 3.0 * warp * (tide.second - 0.5) + 0.05 * t, detail);
    return tide;
}

// Four colours of the metal and its ground; the shader mixes its way through them.
constant float3 copper[4] = {
    float3(0.016, 0.042, 0.060), // ink
    float3(0.035, 0.210, 0.225), // verdigris
    float3(0.620, 0.215, 0.085), // copper
    float3(1.000, 0.800, 0.560)  // where it catches the light
};
constant float3 silver[4] = {
    float3(0.020, 0.022, 0.055), float3(0.130, 0.110, 0.280), float3(0.420, 0.480, 0.600),
    float3(0.980, 0.970, 0.940)
};

float3 metalColour(int i, float hue) { return mix(copper[i], silver[i], hue); }

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = (uv - 0.5) * u.resolution / min(u.resolution.x, u.resolution.y) * p.scale;
    q += float2(3.1, 7.7);
    float t = u.time * p.speed;

    Tide tide = tideAt(q, t, p.warp, 5);

    // Ink in the depths, verdigris on the heights.
    float3 colour = mix(metalColour(0, p.hue), metalColour(1, p.hue),
                        smoothstep(0.25, 0.62, tide.height));
    // Copper where the second push was strong, bright where the first one went up.
    float2 push = tide.second - 0.5;
    colour = mix(colour, metalColour(2, p.hue), smoothstep(0.04, 0.40, dot(push, push) * 5.0));
    colour = mix(colour, metalColour(3, p.hue),
                 0.75 * smoothstep(0.50, 0.74, tide.first.y) * smoothstep(0.40, 0.75, tide.height));

    return float4(colour, 1.0);
}
