// A print of a sunset in half precision: contrast, grain, halation and a light leak.
// @param stops 0.4 -2 2
// @param grain 0.05 0 0.2

half luminance(half3 c) {
    return dot(c, half3(0.2126h, 0.7152h, 0.0722h));
}

half3 curve(half3 x) {
    half3 a = x * (x * 2.51h + 0.03h);
    half3 b = x * (x * 2.43h + 0.59h) + 0.14h;
    return clamp(a / b, half3(0.0h), half3(1.0h));
}

half3 saturated(half3 c, half amount) {
    half y = luminance(c);
    return mix(half3(y), c, half3(amount));
}

half3 split(half3 c, half3 shadows, half3 lights) {
    half y = luminance(c);
    half3 tint = mix(shadows, lights, half3(smoothstep(0.2h, 0.8h, y)));
    return c * (1.0h + 0.25h * (tint - 0.5h));
}

float wave(float x, float time) {
    return 0.02 * sin(x * 9.0 + time) + 0.012 * sin(x * 23.0 - time * 1.7) + 0.006 * sin(x * 51.0 + time * 2.3);
}

half3 scene(float2 q, float time) {
    float2 sun = float2(0.15, 0.06);
    float d = length(q - sun);
    half3 colour = mix(half3(1.4h, 0.7h, 0.3h), half3(0.25h, 0.3h, 0.6h), half3(half(smoothstep(-0.05, 0.5, q.y))));
    colour += half3(2.0h, 1.4h, 0.8h) * half(smoothstep(0.09, 0.08, d));
    colour += half3(0.9h, 0.4h, 0.15h) * half(0.1 / (0.15 + d));
    for (int i = 0; i < 4; i++) {
        float f = float(i);
        float level = 0.02 - 0.09 * f + wave(q.x * (1.5 - 0.2 * f) + f * 2.0, time * (0.3 + 0.3 * f)) * (1.0 + f);
        half cover = half(smoothstep(0.004, -0.004, q.y - level));
        half glint = half(pow(max(sin(q.x * 60.0 + q.y * 200.0 + time * 3.0 + f * 2.0), 0.0), 12.0) * exp(-20.0 * (q.x - sun.x) * (q.x - sun.x)));
        half3 sea = mix(half3(0.55h, 0.35h, 0.3h), half3(0.03h, 0.06h, 0.1h), half3(half(f) * 0.33h));
        colour = mix(colour, sea + glint * half3(1.2h, 0.8h, 0.4h), half3(cover));
    }
    return colour;
}

half noise(float2 pixel, float seed) {
    return half(fract(sin(dot(pixel, float2(12.9898, 78.233)) + seed) * 43758.5453));
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = (uv - 0.5) * float2(u.resolution.x / u.resolution.y, 1.0);
    half3 colour = scene(q, u.time);
    half3 halo = half3(0.0h);
    for (int i = 0; i < 6; i++) {
        float a = float(i) * 1.0471976;
        half3 c = scene(q + 0.03 * float2(cos(a), sin(a)), u.time);
        halo += max(c - half3(1.0h), half3(0.0h));
    }
    colour += halo * half3(0.16h, 0.05h, 0.02h);
    colour *= half(exp2(p.stops));
    colour = curve(colour);
    colour = saturated(colour, 1.2h);
    colour = split(colour, half3(0.4h, 0.5h, 0.7h), half3(0.7h, 0.55h, 0.35h));
    half y = luminance(colour);
    half n = noise(floor(uv * u.resolution), floor(u.time * 24.0)) - 0.5h;
    colour += half3(n * half(p.grain) * (1.0h - y) * 2.0h);
    half leak = half(smoothstep(0.35, 0.0, uv.x + 0.1 * sin(uv.y * 4.0 + u.time)) * 0.35);
    colour += leak * half3(1.0h, 0.35h, 0.1h);
    half vignette = half(1.0 - 0.7 * dot(q, q));
    colour *= vignette;
    return float4(float3(clamp(colour, half3(0.0h), half3(1.0h))), 1.0);
}
