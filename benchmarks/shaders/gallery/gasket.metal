// Spheres in spheres: a repeated fold into a box and inversion in a sphere.
// @param scale 1.25 1.05 1.6
// @param speed 0.15 0 1

struct Trap {
    float distance;
    float2 orbit;
};

Trap fold(float3 q, float s) {
    float scale = 1.0;
    float2 orbit = float2(10.0);
    for (int i = 0; i < 8; i++) {
        q = 2.0 * fract(0.5 * q + 0.5) - 1.0;
        float r2 = dot(q, q);
        orbit = min(orbit, float2(abs(q.y), r2));
        float k = s / r2;
        q *= k;
        scale *= k;
    }
    Trap result;
    result.distance = 0.25 * abs(q.y) / scale;
    result.orbit = orbit;
    return result;
}

float march(float3 eye, float3 ray, float s) {
    float t = 0.01;
    for (int i = 0; i < 60; i++) {
        float d = fold(eye + ray * t, s).distance;
        if (d < 0.001 * t)
            break;
        t += d;
        if (t > 12.0)
            break;
    }
    return t;
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 at = (uv * 2.0 - 1.0) * float2(u.resolution.x / u.resolution.y, 1.0);
    float time = u.time * p.speed;
    float3 eye = float3(2.8 * cos(0.1 + 0.33 * time), 0.4 + 0.3 * cos(0.37 * time), 2.8 * cos(0.5 + 0.35 * time));
    float3 target = float3(1.9 * cos(1.2 + 0.41 * time), 0.4 + 0.1 * cos(0.27 * time), 1.9 * cos(2.0 + 0.38 * time));
    float roll = 0.2 * cos(0.1 * time);
    float3 forward = normalize(target - eye);
    float3 side = normalize(cross(forward, float3(sin(roll), cos(roll), 0.0)));
    float3 up = normalize(cross(side, forward));
    float3 ray = normalize(at.x * side + at.y * up + 2.0 * forward);
    float s = p.scale + 0.1 * cos(time * 0.5);
    float t = march(eye, ray, s);
    float3 colour = float3(0.02, 0.02, 0.03);
    if (t < 12.0) {
        float3 hit = eye + t * ray;
        Trap here = fold(hit, s);
        float2 e = float2(1.0, -1.0) * 0.0006 * t;
        float3 normal = normalize(e.xyy * fold(hit + e.xyy, s).distance + e.yyx * fold(hit + e.yyx, s).distance +
                                  e.yxy * fold(hit + e.yxy, s).distance + e.xxx * fold(hit + e.xxx, s).distance);
        float key = clamp(dot(float3(0.577, 0.577, -0.577), normal), 0.0, 1.0);
        float open = pow(clamp(here.orbit.y * 2.0, 0.0, 1.0), 1.2);
        float3 paint = mix(float3(1.0, 0.8, 0.2), float3(0.9, 0.25, 0.1), clamp(6.0 * here.orbit.x, 0.0, 1.0));
        paint = mix(float3(0.9), paint, pow(clamp(1.0 - 2.0 * here.orbit.y, 0.0, 1.0), 8.0));
        colour = paint * (float3(1.5, 1.3, 1.0) * key + 0.35 * (0.5 + 0.5 * normal.y)) * open * exp(-0.2 * t);
    }
    return float4(sqrt(colour), 1.0);
}
