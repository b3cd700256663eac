// A bending tunnel of rings, flown through without marching: one ring in each round.
// @param speed 1.5 0 5
// @param bend 1.2 0 3

float2 path(float z, float bend) {
    return bend * float2(sin(z * 0.21) + 0.4 * sin(z * 0.53), cos(z * 0.17) * 0.8);
}

float hash(float n) {
    return fract(sin(n * 12.9898) * 43758.5453);
}

float3 palette(float x) {
    return 0.5 + 0.5 * cos(6.2831853 * (x + float3(0.0, 0.33, 0.67)));
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 at = (uv * 2.0 - 1.0) * float2(u.resolution.x / u.resolution.y, 1.0);
    float z = u.time * p.speed;
    float2 here = path(z, p.bend);
    float2 ahead = path(z + 2.0, p.bend) - here;
    float3 colour = float3(0.0);
    float covered = 0.0;
    float first = ceil(z * 2.0) * 0.5;
    for (int i = 0; i < 36; i++) {
        float ringZ = first + float(i) * 0.5;
        float depth = ringZ - z;
        if (depth < 0.1)
            continue;
        float2 centre = path(ringZ, p.bend) - here - ahead * depth * 0.5;
        float2 q = at - centre / depth;
        float radius = length(q) * depth;
        float angle = atan2(q.y, q.x);
        float id = floor(ringZ * 2.0 + 0.5);
        float sides = 5.0 + floor(hash(id) * 4.0);
        float sector = 6.2831853 / sides;
        float folded = fmod(angle + 12.566371 + hash(id + 9.0) * 6.0 + u.time * (hash(id + 3.0) - 0.5), sector) - 0.5 * sector;
        float edge = radius * cos(folded);
        float line = 0.02 + 0.01 * depth;
        float ring = smoothstep(line, 0.0, abs(edge - 1.0));
        float spoke = smoothstep(0.04, 0.0, abs(folded)) * smoothstep(1.0, 1.05, radius) *
                      smoothstep(1.5, 1.4, radius);
        float shown = max(ring, spoke * step(0.6, hash(id + 5.0)));
        float fade = exp(-0.16 * depth);
        float3 paint = palette(hash(id) + ringZ * 0.03) * (0.4 + 0.6 * step(0.7, hash(id + 1.0)));
        colour += paint * shown * fade * (1.0 - covered);
        covered = min(covered + shown * 0.6, 1.0);
        if (covered > 0.98)
            break;
    }
    colour += palette(z * 0.02) * 0.08 / (0.3 + length(at + ahead * 0.3));
    return float4(colour, 1.0);
}
