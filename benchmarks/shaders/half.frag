// Colour work in half precision.
f16vec3 graded(f16vec3 c, float16_t gain) {
    float16_t luma = dot(c, f16vec3(0.2126hf, 0.7152hf, 0.0722hf));
    c = mix(f16vec3(luma), c, f16vec3(1.3hf));
    c = c * gain / (c * gain + 1.0hf);
    return clamp(c, f16vec3(0.0hf), f16vec3(1.0hf));
}

vec4 shade(vec2 uv) {
    vec2 q = uv * 6.0 + u.time;
    f16vec3 colour = f16vec3(0.0hf);
    for (int i = 0; i < 6; i++) {
        float16_t weight = float16_t(1.0 / float(i + 1));
        float16_t wave = float16_t(0.5 + 0.5 * sin(q.x * float(i + 1) + cos(q.y) * 2.0));
        colour += f16vec3(wave, wave * wave, 1.0hf - wave) * weight;
        q = q.yx * 1.1;
    }
    return vec4(vec3(graded(colour, float16_t(p.gain))), 1.0);
}
