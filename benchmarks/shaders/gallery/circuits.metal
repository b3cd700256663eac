// A printed circuit: traces on a grid with turns of 45 degrees, pads, chips and running pulses.
// @param grid 14 6 30
// @param pulses 1.2 0 4

float hash(float2 q) {
    float3 a = fract(q.xyx * float3(0.1031, 0.1030, 0.0973));
    a += dot(a, a.yzx + 33.33);
    return fract((a.x + a.y) * a.z);
}

float bar(float2 q, float2 a, float2 b) {
    float2 d = b - a, r = q - a;
    return length(r - d * clamp(dot(r, d) / dot(d, d), 0.0, 1.0));
}

float box(float2 q, float2 size) {
    float2 d = abs(q) - size;
    return length(max(d, 0.0)) + min(max(d.x, d.y), 0.0);
}

// Distance to the traces of one tile, and the place along them.
float2 traces(float2 f, float kind) {
    float2 best = float2(1.0, 0.0);
    if (kind < 0.3) {
        best = float2(bar(f, float2(0.0, 0.5), float2(1.0, 0.5)), f.x);
        float d = bar(f, float2(0.5, 0.5), float2(0.5, 1.0));
        if (kind < 0.12 && d < best.x)
            best = float2(d, f.y);
    } else if (kind < 0.6) {
        float a = min(bar(f, float2(0.0, 0.5), float2(0.25, 0.5)), bar(f, float2(0.25, 0.5), float2(0.5, 0.75)));
        a = min(a, bar(f, float2(0.5, 0.75), float2(0.5, 1.0)));
        best = float2(a, 0.5 * (f.x + f.y));
        float b = min(bar(f, float2(0.5, 0.0), float2(0.5, 0.25)), bar(f, float2(0.5, 0.25), float2(0.75, 0.5)));
        b = min(b, bar(f, float2(0.75, 0.5), float2(1.0, 0.5)));
        if (b < best.x)
            best = float2(b, 0.5 * (f.x + f.y));
    } else if (kind < 0.85) {
        best = float2(bar(f, float2(0.5, 0.0), float2(0.5, 1.0)), f.y);
    } else {
        float a = bar(f, float2(0.0, 0.5), float2(0.5, 0.5));
        float b = bar(f, float2(0.5, 0.0), float2(0.5, 0.5));
        best = float2(min(a, b), 0.5);
    }
    return best;
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = uv * float2(u.resolution.x / u.resolution.y, 1.0) * p.grid + u.time * float2(0.15, 0.05);
    float2 cell = floor(q), f = fract(q);
    float kind = hash(cell);
    float3 board = float3(0.02, 0.14, 0.1) * (0.9 + 0.1 * sin(q.x * 60.0) * sin(q.y * 60.0));
    float3 copper = float3(0.75, 0.5, 0.2);
    float3 colour = board;
    float2 t = traces(f, kind);
    float body = smoothstep(0.1, 0.08, t.x);
    float edge = smoothstep(0.14, 0.1, t.x) - body;
    colour = mix(colour, board * 0.5, edge);
    colour = mix(colour, float3(0.05, 0.3, 0.17), body);
    float pulse = fract(t.y * 0.5 + hash(cell.yx) - u.time * p.pulses * 0.5);
    float run = smoothstep(0.9, 1.0, pulse) * step(0.45, hash(cell + 7.0));
    colour += run * body * float3(0.3, 1.0, 0.5) * smoothstep(0.1, 0.0, t.x) * 2.0;
    float pad = length(f - 0.5);
    if (kind > 0.85 || hash(cell + 3.0) > 0.8) {
        colour = mix(colour, copper * (0.8 + 0.4 * f.y), smoothstep(0.2, 0.18, pad));
        colour = mix(colour, float3(0.02), smoothstep(0.1, 0.08, pad));
        float glint = smoothstep(0.03, 0.0, abs(pad - 0.15)) * smoothstep(-0.2, 0.2, f.x + f.y - 1.0);
        colour += glint * 0.3;
    }
    float2 big = floor(q / 5.0), local = fract(q / 5.0) - 0.5;
    float chip = hash(big + 91.0);
    if (chip > 0.6) {
        float2 size = chip > 0.8 ? float2(0.3, 0.18) : float2(0.2, 0.2);
        float d = box(local, size);
        float2 legs = abs(fract(local * 18.0) - 0.5);
        float leg = max(d - 0.045, legs.x - 0.25);
        colour = mix(colour, float3(0.75, 0.75, 0.78), smoothstep(0.01, 0.0, leg) * step(size.y - 0.01, abs(local.y)));
        colour *= 0.6 + 0.4 * smoothstep(0.0, 0.04, box(local - float2(0.012, -0.015), size));
        colour = mix(colour, float3(0.06, 0.06, 0.07) + 0.05 * smoothstep(-0.02, 0.0, d), smoothstep(0.004, -0.004, d));
        float notch = length(local - float2(-size.x + 0.03, size.y - 0.04)) - 0.012;
        colour = mix(colour, float3(0.25), smoothstep(0.004, 0.0, notch));
        float2 text = floor((local + size) * 40.0);
        float mark = step(0.55, hash(text + big * 13.0)) * step(abs(local.y), 0.03) * step(abs(local.x), size.x * 0.6);
        colour += mark * step(d, 0.0) * 0.25;
    }
    return float4(sqrt(colour), 1.0);
}
