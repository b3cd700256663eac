// Boards of wood: rings around a bent axis, grain, knots and seams between boards.
// @param rings 9 2 30
// @param polish 0.5 0 1

float hash(float2 q) {
    return fract(sin(dot(q, float2(12.9898, 78.233))) * 43758.5453);
}

float noise(float2 q) {
    float2 cell = floor(q), f = fract(q);
    f = f * f * (3.0 - 2.0 * f);
    float low = mix(hash(cell), hash(cell + float2(1.0, 0.0)), f.x);
    float high = mix(hash(cell + float2(0.0, 1.0)), hash(cell + float2(1.0, 1.0)), f.x);
    return mix(low, high, f.y);
}

float fbm(float2 q) {
    float sum = 0.0, size = 0.5;
    for (int i = 0; i < 5; i++) {
        sum += size * noise(q);
        q *= 2.03;
        size *= 0.5;
    }
    return sum;
}

float knot(float2 q, float2 at, float size) {
    float2 d = (q - at) * float2(0.5, 1.0);
    return exp(-dot(d, d) / (size * size));
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = uv * float2(u.resolution.x / u.resolution.y, 1.0) * 4.0;
    q.x += u.time * 0.1;
    float board = floor(q.y);
    float shift = hash(float2(board, 3.0)) * 7.0;
    float plank = floor((q.x + shift) * 0.35);
    float2 local = float2(q.x + shift, fract(q.y));
    float random = hash(float2(board, plank));
    float2 grain = float2(local.x * 0.35, local.y + random * 10.0);
    float2 knotAt = float2((plank + 0.3 + 0.4 * random) / 0.35, 0.3 + 0.4 * hash(float2(plank, board)));
    float bulge = knot(local, knotAt, 0.25);
    float bend = fbm(grain * float2(1.0, 3.0)) * 0.6 + bulge * 0.9;
    float ring = fract((grain.y * 0.6 + bend) * p.rings * 0.4 + random * 5.0);
    float late = smoothstep(0.0, 0.75, ring) * (1.0 - smoothstep(0.85, 1.0, ring));
    float fibre = noise(float2(local.x * 4.0, local.y * 160.0)) * 0.6 + noise(float2(local.x * 9.0, local.y * 320.0)) * 0.4;
    float3 light = mix(float3(0.76, 0.55, 0.33), float3(0.83, 0.66, 0.43), random);
    float3 dark = light * float3(0.55, 0.45, 0.38);
    float3 colour = mix(light, dark, late * 0.7);
    colour *= 0.82 + 0.3 * fibre;
    colour = mix(colour, float3(0.2, 0.1, 0.05), smoothstep(0.6, 1.0, bulge));
    float seam = min(min(local.y, 1.0 - local.y), abs(fract((q.x + shift) * 0.35 + 0.5) - 0.5) * 2.8);
    colour *= smoothstep(0.0, 0.02, seam);
    float gloss = exp(-8.0 * abs(uv.x + uv.y - 1.0 + 0.05 * late + 0.03 * fibre));
    colour += p.polish * 0.3 * gloss;
    return float4(colour, 1.0);
}
