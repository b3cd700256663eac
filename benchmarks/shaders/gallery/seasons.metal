// How fast neighbours part when a growth rate alternates by a word of twelve letters.
// @param left 2.4 2 4
// @param width 1.5 0.2 2

constant uint words[3] = {0x0d5u, 0xaa3u, 0xfc0u};

float letter(uint word, int i, float2 rates) {
    return ((word >> uint(i % 12)) & 1u) != 0u ? rates.x : rates.y;
}

float exponent(float2 rates, uint word) {
    float x = 0.5, sum = 0.0;
    for (int i = 0; i < 24; i++) {
        float r = letter(word, i, rates);
        x = r * x * (1.0 - x);
    }
    for (int i = 0; i < 72; i++) {
        float r = letter(word, i, rates);
        x = r * x * (1.0 - x);
        sum += log2(max(abs(r - 2.0 * r * x), 0.00001));
        if (sum < -500.0)
            break;
    }
    return sum / 72.0;
}

float3 calm(float x) {
    float3 low = float3(0.02, 0.03, 0.1), high = float3(1.0, 0.9, 0.55);
    float y = clamp(-x * 0.5, 0.0, 1.0);
    float3 colour = mix(high, low, sqrt(y));
    return colour * (0.85 + 0.15 * cos(y * 40.0));
}

float3 wild(float x) {
    float y = clamp(x, 0.0, 1.0);
    return mix(float3(0.08, 0.02, 0.1), float3(0.2, 0.55, 0.75), pow(y, 0.7));
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float slow = u.time * 0.1;
    float2 rates = p.left + p.width * float2(uv.x, uv.y);
    rates += 0.04 * float2(sin(slow), cos(slow * 1.3));
    rates = clamp(rates, 0.5, 4.0);
    int which = int(fmod(u.time * 0.15, 3.0));
    float v = exponent(rates, words[which]);
    float3 colour = v < 0.0 ? calm(v) : wild(v);
    float edge = smoothstep(0.03, 0.0, abs(v));
    colour = mix(colour, float3(0.95, 0.4, 0.15), edge * 0.6);
    float vignette = 1.0 - 0.4 * dot(uv - 0.5, uv - 0.5);
    return float4(colour * vignette, 1.0);
}
