// @param bands 7 2 12

// Sorts eight values of a small array, then reads the middle: a median of waves.
float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float values[8];
    for (int i = 0; i < 8; i++)
        values[i] = sin(uv.x * p.bands * float(i + 1) * 0.5 + u.time) * cos(uv.y * float(9 - i) + float(i));
    for (int i = 1; i < 8; i++) {
        float value = values[i];
        int j = i;
        while (j > 0 && values[j - 1] > value) {
            values[j] = values[j - 1];
            j--;
        }
        values[j] = value;
    }
    float median = 0.5 * (values[3] + values[4]);
    return float4(0.5 + 0.5 * float3(values[0], median, values[7]), 1.0);
}
