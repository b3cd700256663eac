// @param rows 6 2 12

// The first of a grid of moving discs that covers the pixel, found by nested loops.
float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = uv * float2(u.resolution.x / u.resolution.y, 1.0);
    int rows = int(p.rows);
    int found = -1;
    float closest = 1.0;
    for (int y = 0; y < rows && found < 0; y++) {
        float height = (float(y) + 0.5) / float(rows);
        if (abs(q.y - height) > 1.5 / float(rows)) continue;
        for (int x = 0; x < 10; x++) {
            float phase = float(x * 7 + y * 3);
            float2 centre = float2((float(x) + 0.5) * 0.18, height) + 0.05 * float2(sin(u.time + phase), cos(u.time * 1.3 + phase));
            float d = length(q - centre) - 0.06;
            closest = min(closest, abs(d));
            if (d < 0.0) {
                found = x + y * 10;
                break;
            }
        }
    }
    float3 colour = found < 0 ? float3(0.05) + 0.3 * exp(-40.0 * closest)
                              : 0.5 + 0.5 * cos(float(found) * 0.7 + float3(0, 2, 4));
    return float4(colour, 1.0);
}
