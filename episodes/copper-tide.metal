// Copper Tide
//
// @episode 3 Copper Tide
// @still 8
// @length 60
// @teaches Fractal noise that bends its own coordinates, and light from the slope of a height
// @category Flow
// @final Light on the tide | A height has a slope, and a slope catches light: the flow becomes a surface.
// @tags noise, domain warping, colour
//
// Noise by itself looks like fog. Ask for noise at a place that other noise has pushed aside and it
// begins to flow; do it twice and it looks like metal poured into ink.

// @param speed 0.35 0.0 1.5 How fast the tide runs
// @param scale 1.6 0.6 4.0 How much of the tide is seen
// @param warp 1.0 0.0 2.0 How far the flow bends itself
// @param relief 0.7 0.0 1.5 How much the surface stands out
// @param hue 0.0 0.0 1.0 Turns the metal from copper to silver

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

constant float2 nearby[3] = {float2(1.0, 0.0), float2(0.0, 1.0), float2(0.0, 0.0)};

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

    // Heights at three places close together give the slope, and the slope gives the light. The
    // last place is the pixel's own.
    const float h = 0.012;
    Tide tide;
    float3 heights;
    for (int i = 0; i < 3; i++) {
        tide = tideAt(q + h * nearby[i], t, p.warp, 5);
        heights[i] = tide.height;
    }
    float2 slope = (heights.xy - heights.z) / h;
    float3 n = normalize(float3(-slope * p.relief * 0.55, 1.0));
    float3 light = normalize(float3(-0.55, 0.65, 0.55));
    float diffuse = saturate(dot(n, light));
    float shine = pow(saturate(dot(reflect(float3(0.0, 0.0, -1.0), n), light)), 30.0);

    float3 colour = mix(metalColour(0, p.hue), metalColour(1, p.hue),
                        smoothstep(0.25, 0.62, tide.height));
    float2 push = tide.second - 0.5;
    colour = mix(colour, metalColour(2, p.hue), smoothstep(0.04, 0.40, dot(push, push) * 5.0));
    colour = mix(colour, metalColour(3, p.hue),
                 0.75 * smoothstep(0.50, 0.74, tide.first.y) * smoothstep(0.40, 0.75, tide.height));

    // Valleys lie in their own shade; a metal's highlight has the metal's colour.
    float open = smoothstep(0.18, 0.60, tide.height);
    colour *= (0.10 + 1.35 * diffuse * diffuse) * (0.25 + 0.75 * open);
    colour += (0.5 * colour + 0.5 * metalColour(3, p.hue)) * shine * 0.8 * open;
    colour = 1.0 - exp(-2.3 * colour);
    colour = pow(colour, float3(0.85));
    colour *= 1.0 - 0.5 * dot(uv - 0.5, uv - 0.5);
    colour += (hash(uv * u.resolution + 0.5) - 0.5) / 255.0;
    return float4(colour, 1.0);
}
