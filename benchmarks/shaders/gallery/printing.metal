// Four inks on turned grids of dots print a picture of fruit.
// @param screen 110 30 240
// @param slip 0.002 0 0.01

float3 fruit(float2 q, float time) {
    float3 colour = mix(float3(0.95, 0.9, 0.7), float3(0.6, 0.8, 0.85), q.y + 0.5);
    colour = mix(colour, float3(0.55, 0.35, 0.2), smoothstep(-0.22, -0.23, q.y));
    for (int i = 0; i < 4; i++) {
        float f = float(i);
        float2 middle = float2(-0.55 + 0.37 * f, -0.12 + 0.05 * cos(f * 2.0));
        float radius = 0.19 + 0.02 * sin(f * 5.0);
        float2 d = (q - middle) / radius;
        float2 shade_ = (q - middle - float2(0.08, -0.17)) / float2(radius * 1.3, radius * 0.25);
        colour *= 1.0 - 0.5 * smoothstep(1.0, 0.2, length(shade_));
        float r2 = dot(d, d);
        if (r2 > 1.0)
            continue;
        float3 normal = float3(d, sqrt(1.0 - r2));
        float3 light = normalize(float3(-0.5 + 0.2 * sin(time), 0.7, 0.6));
        float lit = max(dot(normal, light), 0.0);
        float3 skin = float3(0.0);
        switch (i) {
        case 0: skin = float3(0.9, 0.2, 0.12); break;
        case 1: skin = float3(1.0, 0.6, 0.1); break;
        case 2: skin = float3(0.5, 0.7, 0.15); break;
        default: skin = float3(0.45, 0.15, 0.45); break;
        }
        float speckle = 0.95 + 0.05 * sin(d.x * 40.0) * sin(d.y * 40.0);
        colour = skin * speckle * (0.25 + 0.85 * lit) + 0.6 * pow(lit, 40.0);
    }
    return clamp(colour, 0.0, 1.0);
}

float4 inks(float3 colour) {
    float3 missing = 1.0 - colour;
    float black = min(missing.x, min(missing.y, missing.z));
    black = smoothstep(0.1, 1.0, black) * black;
    return float4((missing - black) / max(1.0 - black, 0.001), black);
}

float dots(float2 q, float angle, float count, float amount) {
    float c = cos(angle), s = sin(angle);
    float2 at = float2(c * q.x - s * q.y, s * q.x + c * q.y) * count;
    float2 cell = fract(at) - 0.5;
    float radius = sqrt(amount) * 0.72;
    float soft = 0.12;
    return smoothstep(radius + soft, radius - soft, length(cell)) * step(0.01, amount);
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = (uv - 0.5) * float2(u.resolution.x / u.resolution.y, 1.0);
    float count = p.screen;
    float3 paper = float3(0.97, 0.95, 0.9);
    float grain = fract(sin(dot(floor(uv * u.resolution * 0.5), float2(12.9898, 78.233))) * 43758.5453);
    paper -= 0.03 * grain;
    float3 colour = paper;
    for (int ink = 0; ink < 4; ink++) {
        float angle = ink == 0 ? 0.2617994 : (ink == 1 ? 1.3089969 : (ink == 2 ? 0.0 : 0.7853982));
        float2 off = p.slip * float2(cos(float(ink) * 2.1), sin(float(ink) * 2.1));
        float2 at = q + off;
        float c = cos(angle), s = sin(angle);
        float2 grid = float2(c * at.x - s * at.y, s * at.x + c * at.y) * count;
        float2 middle = (floor(grid) + 0.5) / count;
        float2 back = float2(c * middle.x + s * middle.y, c * middle.y - s * middle.x);
        float4 amounts = inks(fruit(back, u.time));
        float amount = amounts[ink];
        float cover = dots(at, angle, count, amount);
        float3 paint = ink == 0 ? float3(0.0, 0.65, 0.9) : (ink == 1 ? float3(0.9, 0.1, 0.5) : (ink == 2 ? float3(1.0, 0.9, 0.05) : float3(0.1)));
        colour *= mix(float3(1.0), paint, cover);
    }
    return float4(colour, 1.0);
}
