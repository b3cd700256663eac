// @param zoom 1.6 1.1 2.2

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = (uv - 0.5) * 2.0 * u.resolution / u.resolution.y;
    float2 first = q;
    float3 sum = float3(0.0);
    for (float i = 0.0; i < 4.0; i++) {
        q = fract(q * p.zoom) - 0.5;
        float d = length(q) * exp(-length(first));
        float3 colour = 0.5 + 0.5 * cos(6.28318 * (length(first) + i * 0.4 + u.time * 0.4 + float3(0.263, 0.416, 0.557)));
        d = abs(sin(d * 8.0 + u.time) / 8.0);
        d = pow(0.01 / d, 1.2);
        sum += colour * d;
    }
    return float4(sum, 1.0);
}
