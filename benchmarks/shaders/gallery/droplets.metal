// Balls that flow together, in front of a sky of two colours.
// @param blend 0.35 0.05 1
// @param count 7 2 9

float smoothMin(float a, float b, float k) {
    float h = max(k - abs(a - b), 0.0) / k;
    return min(a, b) - h * h * k * 0.25;
}

float3 centre(int i, float time) {
    float f = float(i);
    return float3(sin(time * (0.6 + 0.07 * f) + f * 1.7), cos(time * (0.5 + 0.05 * f) + f * 2.3) * 0.7,
                  sin(time * 0.4 + f * 4.1)) * 0.9;
}

float field(float3 q, float time, int count, float blend) {
    float d = length(q - centre(0, time)) - 0.4;
    for (int i = 1; i < count; i++)
        d = smoothMin(d, length(q - centre(i, time)) - (0.25 + 0.03 * float(i % 3)), blend);
    return d;
}

float3 sky(float3 ray) {
    float up = ray.y * 0.5 + 0.5;
    float3 colour = mix(float3(0.9, 0.75, 0.6), float3(0.2, 0.4, 0.75), smoothstep(0.2, 0.9, up));
    float lamp = smoothstep(0.93, 0.95, dot(ray, normalize(float3(0.5, 0.6, -0.6))));
    return colour + lamp;
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 at = (uv - 0.5) * float2(u.resolution.x / u.resolution.y, 1.0) * 2.0;
    float3 eye = float3(0.0, 0.0, -3.6), ray = normalize(float3(at, 2.0));
    int count = int(p.count);
    float t = 1.8;
    float nearest = 10.0;
    for (int i = 0; i < 48; i++) {
        float d = field(eye + ray * t, u.time, count, p.blend);
        nearest = min(nearest, d);
        if (d < 0.002)
            break;
        t += d * 0.9;
        if (t > 6.0)
            break;
    }
    float3 colour = sky(ray);
    if (t < 6.0) {
        float3 hit = eye + ray * t;
        float2 e = float2(0.003, 0.0);
        float here = field(hit, u.time, count, p.blend);
        float3 normal = normalize(float3(field(hit + e.xyy, u.time, count, p.blend),
                                         field(hit + e.yxy, u.time, count, p.blend),
                                         field(hit + e.yyx, u.time, count, p.blend)) - here);
        float fresnel = pow(1.0 - max(dot(normal, -ray), 0.0), 4.0);
        float3 body = 0.5 + 0.5 * cos(float3(0.0, 1.0, 2.0) + hit * 2.0 + u.time);
        colour = mix(body * (0.4 + 0.6 * max(normal.y, 0.0)), sky(reflect(ray, normal)), 0.15 + 0.85 * fresnel);
    } else {
        colour *= 0.75 + 0.25 * smoothstep(0.0, 0.3, nearest);
    }
    return float4(colour, 1.0);
}
