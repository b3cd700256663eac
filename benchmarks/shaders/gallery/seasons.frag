// How fast neighbours part when a growth rate alternates by a word of twelve letters.

const uint words[3] = {0x0d5u, 0xaa3u, 0xfc0u};

float letter(uint word, int i, vec2 rates) {
    return ((word >> uint(i % 12)) & 1u) != 0u ? rates.x : rates.y;
}

float exponent(vec2 rates, uint word) {
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

vec3 calm(float x) {
    vec3 low = vec3(0.02, 0.03, 0.1), high = vec3(1.0, 0.9, 0.55);
    float y = clamp(-x * 0.5, 0.0, 1.0);
    vec3 colour = mix(high, low, sqrt(y));
    return colour * (0.85 + 0.15 * cos(y * 40.0));
}

vec3 wild(float x) {
    float y = clamp(x, 0.0, 1.0);
    return mix(vec3(0.08, 0.02, 0.1), vec3(0.2, 0.55, 0.75), pow(y, 0.7));
}

vec4 shade(vec2 uv) {
    float slow = u.time * 0.1;
    vec2 rates = p.left + p.width * vec2(uv.x, uv.y);
    rates += 0.04 * vec2(sin(slow), cos(slow * 1.3));
    rates = clamp(rates, 0.5, 4.0);
    int which = int(mod(u.time * 0.15, 3.0));
    float v = exponent(rates, words[which]);
    vec3 colour = v < 0.0 ? calm(v) : wild(v);
    float edge = smoothstep(0.03, 0.0, abs(v));
    colour = mix(colour, vec3(0.95, 0.4, 0.15), edge * 0.6);
    float vignette = 1.0 - 0.4 * dot(uv - 0.5, uv - 0.5);
    return vec4(colour * vignette, 1.0);
}
