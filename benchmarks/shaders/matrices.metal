// @param spin 0.7 0 3
// @param width 0.02 0.005 0.1

float3x3 rotation(float3 angles) {
    float3 c = cos(angles), s = sin(angles);
    float3x3 x = float3x3(float3(1, 0, 0), float3(0, c.x, s.x), float3(0, -s.x, c.x));
    float3x3 y = float3x3(float3(c.y, 0, -s.y), float3(0, 1, 0), float3(s.y, 0, c.y));
    float3x3 z = float3x3(float3(c.z, s.z, 0), float3(-s.z, c.z, 0), float3(0, 0, 1));
    return x * y * z;
}

float2 projected(float4x4 camera, float3 q) {
    float4 clip = camera * float4(q, 1.0);
    return clip.xy / clip.w;
}

float segment(float2 q, float2 a, float2 b) {
    float2 ab = b - a, aq = q - a;
    return length(aq - ab * saturate(dot(aq, ab) / dot(ab, ab)));
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = (uv - 0.5) * u.resolution / u.resolution.y * 2.0;
    float3x3 r = rotation(u.time * p.spin * float3(1.0, 0.7, 0.4));
    float4x4 camera = float4x4(float4(1.6, 0, 0, 0), float4(0, 1.6, 0, 0), float4(0, 0, 1, 1),
                               float4(0, 0, 3.0, 3.0));
    float d = 10.0;
    for (int axis = 0; axis < 3; axis++) {
        for (int i = 0; i < 4; i++) {
            float s = (i & 1) != 0 ? 0.8 : -0.8, t = (i & 2) != 0 ? 0.8 : -0.8;
            float3 a = axis == 0 ? float3(-0.8, s, t) : axis == 1 ? float3(s, -0.8, t) : float3(s, t, -0.8);
            float3 b = axis == 0 ? float3(0.8, s, t) : axis == 1 ? float3(s, 0.8, t) : float3(s, t, 0.8);
            d = min(d, segment(q, projected(camera, r * a), projected(camera, r * b)));
        }
    }
    float glow = p.width / (d + p.width);
    return float4(transpose(r) * float3(glow, glow * glow, 0.3) * 0.5 + 0.5 * glow, 1.0);
}
