// @param gain 1.2 0 3

// Colour work in half precision.
half3 graded(half3 c, half gain) {
    half luma = dot(c, half3(0.2126h, 0.7152h, 0.0722h));
    c = mix(half3(luma), c, half3(1.3h));
    c = c * gain / (c * gain + 1.0h);
    return clamp(c, half3(0.0h), half3(1.0h));
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = uv * 6.0 + u.time;
    half3 colour = half3(0.0h);
    for (int i = 0; i < 6; i++) {
        half weight = half(1.0 / float(i + 1));
        half wave = half(0.5 + 0.5 * sin(q.x * float(i + 1) + cos(q.y) * 2.0));
        colour += half3(wave, wave * wave, 1.0h - wave) * weight;
        q = q.yx * 1.1;
    }
    return float4(float3(graded(colour, half(p.gain))), 1.0);
}
