// A torus with a twisted square section, striped along its length.
// @param twists 3 0 8
// @param speed 0.5 0 2

constant float tau = 6.2831853;

float2x2 turn(float angle) {
    float c = cos(angle), s = sin(angle);
    return float2x2(float2(c, s), float2(-s, c));
}

struct Surface {
    float distance;
    float along;
    float around;
};

Surface ring(float3 q, float twists, float time) {
    Surface s;
    s.along = atan2(q.z, q.x);
    float2 section = float2(length(q.xz) - 1.0, q.y);
    section = turn(s.along * twists * 0.25 + time) * section;
    float2 d = abs(section) - 0.28;
    s.distance = length(max(d, 0.0)) + min(max(d.x, d.y), 0.0) - 0.06;
    s.around = atan2(section.y, section.x);
    return s;
}

float3 paint(Surface s, float time) {
    float stripe = fract(s.along / tau * 12.0 + s.around / tau * 2.0 - time * 0.2);
    float line = smoothstep(0.02, 0.05, abs(stripe - 0.5));
    float side = floor((s.around + 0.785) / tau * 4.0);
    float3 base = 0.55 + 0.45 * cos(float3(0.0, 2.1, 4.2) + side * 1.6);
    return mix(float3(0.05), base, line);
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 at = (uv * 2.0 - 1.0) * float2(u.resolution.x / u.resolution.y, 1.0);
    float time = u.time * p.speed;
    float3 eye = float3(0.0, 0.0, -2.8), ray = normalize(float3(at, 1.5));
    float2x2 tilt = turn(0.9), spin = turn(time * 0.4);
    eye.yz = tilt * eye.yz;
    ray.yz = tilt * ray.yz;
    eye.xz = spin * eye.xz;
    ray.xz = spin * ray.xz;
    float t = 1.0;
    Surface found = ring(eye + ray * t, p.twists, time);
    for (int i = 0; i < 60 && found.distance > 0.001 && t < 5.0; i++) {
        t += found.distance * 0.7;
        found = ring(eye + ray * t, p.twists, time);
    }
    float glow = 0.1 * exp(-2.0 * abs(length(at) - 0.8));
    if (t >= 5.0)
        return float4(float3(0.04, 0.05, 0.08) + glow, 1.0);
    float3 hit = eye + ray * t;
    float e = 0.002;
    float3 normal = normalize(float3(ring(hit + float3(e, 0, 0), p.twists, time).distance,
                                     ring(hit + float3(0, e, 0), p.twists, time).distance,
                                     ring(hit + float3(0, 0, e), p.twists, time).distance) -
                              found.distance);
    float light = 0.5 + 0.5 * dot(normal, normalize(float3(0.4, 0.8, -0.3)));
    float3 colour = paint(found, u.time) * light * light;
    colour += 0.3 * pow(max(dot(reflect(ray, normal), float3(0.0, 0.9, -0.4)), 0.0), 16.0);
    return float4(colour, 1.0);
}
