// A Julia set of quaternions, with the derivative carried along for its distance.
// @param shape -0.2 -1 1
// @param speed 0.4 0 2

float4 squared(float4 a) {
    return float4(a.x * a.x - dot(a.yzw, a.yzw), 2.0 * a.x * a.yzw);
}

float4 product(float4 a, float4 b) {
    return float4(a.x * b.x - dot(a.yzw, b.yzw), a.x * b.yzw + b.x * a.yzw + cross(a.yzw, b.yzw));
}

float2 julia(float3 q, float4 c) {
    float4 z = float4(q, 0.0), slope = float4(1.0, 0.0, 0.0, 0.0);
    float size = dot(z, z), trap = size;
    for (int i = 0; i < 9; i++) {
        slope = 2.0 * product(z, slope);
        z = squared(z) + c;
        size = dot(z, z);
        trap = min(trap, size);
        if (size > 16.0)
            break;
    }
    float radius = sqrt(size);
    return float2(0.5 * radius * log(radius) / length(slope), trap);
}

float3 normalAt(float3 q, float4 c) {
    float e = 0.002;
    float3 n;
    for (int axis = 0; axis < 3; axis++) {
        float3 step_ = float3(axis == 0 ? e : 0.0, axis == 1 ? e : 0.0, axis == 2 ? e : 0.0);
        n[axis] = julia(q + step_, c).x - julia(q - step_, c).x;
    }
    return normalize(n);
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 at = (uv * 2.0 - 1.0) * float2(u.resolution.x / u.resolution.y, 1.0);
    float time = u.time * p.speed;
    float4 c = 0.45 * cos(float4(0.5, 3.9, 1.4, 1.1) + time * float4(1.2, 1.7, 1.3, 2.5)) -
               float4(0.3, 0.0, 0.0, 0.0) + float4(p.shape * 0.2, 0.0, 0.0, 0.0);
    float a = 0.3 * u.time;
    float3 eye = 2.4 * float3(sin(a), 0.35, cos(a)), forward = normalize(-eye);
    float3 side = normalize(cross(forward, float3(0, 1, 0))), up = cross(side, forward);
    float3 ray = normalize(at.x * side + at.y * up + 2.2 * forward);
    float3 colour = mix(float3(0.93, 0.9, 0.85), float3(0.6, 0.65, 0.7), length(at) * 0.5);
    float t = 1.0;
    float2 found = float2(1.0);
    for (int i = 0; i < 50; i++) {
        found = julia(eye + ray * t, c);
        if (found.x < 0.001)
            break;
        t += found.x;
        if (t > 4.2)
            break;
    }
    if (t <= 4.2) {
        float3 hit = eye + ray * t, normal = normalAt(hit, c);
        float3 light = normalize(float3(0.5, 0.9, 0.4));
        float shine = pow(max(dot(normal, normalize(light - ray)), 0.0), 40.0);
        float3 paint = mix(float3(0.75, 0.15, 0.2), float3(0.95, 0.8, 0.6), sqrt(min(found.y * 1.5, 1.0)));
        colour = paint * (0.25 + 0.75 * max(dot(normal, light), 0.0)) * (0.6 + 0.4 * min(found.y * 4.0, 1.0)) + 0.4 * shine;
    }
    return float4(colour, 1.0);
}
