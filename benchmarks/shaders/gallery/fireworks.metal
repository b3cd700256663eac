// Rockets that burst: two loops, one over rockets and one over their sparks.
// @param rockets 5 1 8
// @param gravity 0.25 0 1

float hash1(float n) {
    return fract(sin(n) * 43758.5453);
}

float2 direction(float n) {
    float a = hash1(n) * 6.2831853;
    float r = sqrt(hash1(n + 31.7));
    return r * float2(cos(a), sin(a));
}

float3 hue(float x) {
    float3 k = fmod(float3(5.0, 3.0, 1.0) + x * 6.0, float3(6.0));
    return 1.0 - clamp(min(k, 4.0 - k), 0.0, 1.0);
}

float skyline(float x) {
    float block = floor(x * 18.0);
    float tall = 0.05 + 0.12 * hash1(block + 3.0);
    return tall + 0.02 * step(0.7, hash1(block * 2.1)) * smoothstep(0.3, 0.5, fract(x * 18.0));
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float aspect = u.resolution.x / u.resolution.y;
    float2 q = float2((uv.x - 0.5) * aspect, uv.y);
    float3 colour = mix(float3(0.03, 0.02, 0.08), float3(0.0, 0.0, 0.02), uv.y);
    int rockets = int(p.rockets);
    for (int i = 0; i < rockets; i++) {
        float period = 2.2 + 0.6 * hash1(float(i) * 3.3);
        float clock = u.time / period + hash1(float(i) * 7.7);
        float shot = floor(clock), life = fract(clock);
        float seed = shot * 17.0 + float(i) * 101.0;
        float2 from = float2((hash1(seed) - 0.5) * aspect * 0.8, 0.0);
        float2 burst = float2(from.x + (hash1(seed + 1.0) - 0.5) * 0.3, 0.5 + 0.35 * hash1(seed + 2.0));
        float3 paint = hue(hash1(seed + 3.0));
        if (life < 0.3) {
            float climb = life / 0.3;
            float2 at = mix(from, burst, 1.0 - (1.0 - climb) * (1.0 - climb));
            float2 d = q - at;
            colour += float3(1.0, 0.8, 0.5) * 0.00008 / (dot(d, d) + 0.00003);
            continue;
        }
        float age = (life - 0.3) / 0.7;
        float2 near = q - burst;
        if (dot(near, near) > 0.3)
            continue;
        float reach = 0.42 * (1.0 - exp(-4.0 * age));
        float fade = (1.0 - age) * (1.0 - age);
        for (int k = 0; k < 40; k++) {
            float n = seed + float(k) * 1.37;
            float2 at = burst + direction(n) * reach;
            at.y -= p.gravity * age * age;
            float2 d = q - at;
            float twinkle = 0.6 + 0.4 * sin(age * 40.0 + n * 5.0);
            float light = 0.00006 * fade * twinkle / (dot(d, d) + 0.00002);
            colour += mix(paint, float3(1.0), 0.3 * hash1(n + 5.0)) * light;
        }
        colour += paint * 0.03 * fade * exp(-6.0 * dot(near, near));
    }
    float roof = skyline(uv.x);
    if (uv.y < roof) {
        float2 pane = float2(uv.x * 180.0, uv.y * 110.0);
        float lit = step(0.82, hash1(dot(floor(pane), float2(1.7, 31.3))));
        float2 f = abs(fract(pane) - 0.5);
        colour = float3(0.01, 0.01, 0.02) + lit * float3(0.9, 0.7, 0.3) * 0.5 * step(max(f.x, f.y), 0.3);
    }
    return float4(colour / (0.6 + colour) * 1.4, 1.0);
}
