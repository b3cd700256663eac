// Layers of stars that fly towards the eye; each cell looks at its eight neighbours.
// @param layers 5 1 8
// @param speed 0.08 0 0.5

float hash(float2 q) {
    q = fract(q * float2(0.12334, 0.45621));
    q += dot(q, q + 4.532);
    return fract(q.x * q.y * 3.1);
}

float2x2 rotation(float a) {
    float s = sin(a), c = cos(a);
    return float2x2(float2(c, s), float2(-s, c));
}

float star(float2 q, float flare) {
    float d = length(q);
    float m = 0.03 / max(d, 0.001);
    float rays = max(0.0, 1.0 - abs(q.x * q.y * 1000.0));
    m += rays * flare;
    q = rotation(0.7853982) * q;
    rays = max(0.0, 1.0 - abs(q.x * q.y * 1000.0));
    m += rays * 0.3 * flare;
    return m * smoothstep(0.9, 0.2, d);
}

float3 layer(float2 q, float time) {
    float3 colour = float3(0.0);
    float2 f = fract(q) - 0.5, cell = floor(q);
    for (int y = -1; y <= 1; y++) {
        for (int x = -1; x <= 1; x++) {
            float2 offset = float2(x, y);
            float n = hash(cell + offset);
            float size = fract(n * 45.32);
            float2 at = f - offset - float2(n, fract(n * 34.0)) + 0.5;
            float light = star(at, smoothstep(0.9, 1.0, size) * 0.6);
            float3 tint = sin(float3(0.2, 0.3, 0.9) * fract(n * 23.452) * 12.32) * 0.5 + 0.5;
            tint = tint * float3(1.0, 0.35, 1.0 + size) + float3(0.2, 0.2, 0.1) * 2.0;
            float twinkle = 0.7 + 0.3 * sin(time * 3.0 + n * 6.2831853);
            colour += light * size * tint * twinkle;
        }
    }
    return colour;
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = (uv - 0.5) * float2(u.resolution.x / u.resolution.y, 1.0);
    float time = u.time * p.speed;
    float2 steer = 0.3 * float2(sin(time * 2.2), cos(time * 2.2));
    q = rotation(time) * q;
    float3 colour = float3(0.0);
    int layers = int(p.layers);
    for (int i = 0; i < layers; i++) {
        float f = float(i) / float(layers);
        float depth = fract(f + time);
        float scale = mix(18.0, 0.6, depth);
        float fade = depth * smoothstep(1.0, 0.9, depth);
        colour += layer(q * scale + f * 453.2 - steer * depth, u.time) * fade;
    }
    float haze = 0.05 / (0.2 + length(q - steer * 0.2));
    colour += haze * float3(0.3, 0.2, 0.5);
    return float4(1.0 - exp(-colour), 1.0);
}
