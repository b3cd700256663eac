vec3 picture(vec2 uv, float t) {
    vec2 q = uv * 2.0 - 1.0;
    float ring = 0.5 + 0.5 * cos(length(q) * 14.0 - t * 2.0);
    float stripes = smoothstep(0.4, 0.6, fract(uv.x * 8.0 + 0.3 * sin(uv.y * 9.0 + t)));
    return mix(vec3(0.1, 0.3, 0.6), vec3(1.6, 0.8, 0.3), ring * stripes);
}

vec3 toneMapped(vec3 x) {
    return clamp(x * (2.51 * x + 0.03) / (x * (2.43 * x + 0.59) + 0.14), 0.0, 1.0);
}

vec4 shade(vec2 uv) {
    vec2 q = uv - 0.5;
    float square = dot(q, q);
    vec2 at = 0.5 + q * (1.0 + p.bend * square);
    vec3 colour = vec3(picture(at + vec2(p.split, 0.0), u.time).r, picture(at, u.time).g,
                       picture(at - vec2(p.split, 0.0), u.time).b);
    colour *= 0.9 + 0.1 * sin(uv.y * u.resolution.y * 1.5707963);
    colour *= 1.0 - 0.9 * square;
    vec2 pixel = floor(uv * u.resolution);
    float noise = fract(52.9829189 * fract(dot(pixel, vec2(0.06711056, 0.00583715))));
    colour = toneMapped(colour + (noise - 0.5) * p.grain);
    return vec4(pow(colour, vec3(1.0 / 2.2)), 1.0);
}
