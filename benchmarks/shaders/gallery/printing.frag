// Four inks on turned grids of dots print a picture of fruit.

vec3 fruit(vec2 q, float time) {
    vec3 colour = mix(vec3(0.95, 0.9, 0.7), vec3(0.6, 0.8, 0.85), q.y + 0.5);
    colour = mix(colour, vec3(0.55, 0.35, 0.2), smoothstep(-0.22, -0.23, q.y));
    for (int i = 0; i < 4; i++) {
        float f = float(i);
        vec2 middle = vec2(-0.55 + 0.37 * f, -0.12 + 0.05 * cos(f * 2.0));
        float radius = 0.19 + 0.02 * sin(f * 5.0);
        vec2 d = (q - middle) / radius;
        vec2 shade_ = (q - middle - vec2(0.08, -0.17)) / vec2(radius * 1.3, radius * 0.25);
        colour *= 1.0 - 0.5 * smoothstep(1.0, 0.2, length(shade_));
        float r2 = dot(d, d);
        if (r2 > 1.0)
            continue;
        vec3 normal = vec3(d, sqrt(1.0 - r2));
        vec3 light = normalize(vec3(-0.5 + 0.2 * sin(time), 0.7, 0.6));
        float lit = max(dot(normal, light), 0.0);
        vec3 skin = vec3(0.0);
        switch (i) {
        case 0: skin = vec3(0.9, 0.2, 0.12); break;
        case 1: skin = vec3(1.0, 0.6, 0.1); break;
        case 2: skin = vec3(0.5, 0.7, 0.15); break;
        default: skin = vec3(0.45, 0.15, 0.45); break;
        }
        float speckle = 0.95 + 0.05 * sin(d.x * 40.0) * sin(d.y * 40.0);
        colour = skin * speckle * (0.25 + 0.85 * lit) + 0.6 * pow(lit, 40.0);
    }
    return clamp(colour, 0.0, 1.0);
}

vec4 inks(vec3 colour) {
    vec3 missing = 1.0 - colour;
    float black = min(missing.x, min(missing.y, missing.z));
    black = smoothstep(0.1, 1.0, black) * black;
    return vec4((missing - black) / max(1.0 - black, 0.001), black);
}

float dots(vec2 q, float angle, float count, float amount) {
    float c = cos(angle), s = sin(angle);
    vec2 at = vec2(c * q.x - s * q.y, s * q.x + c * q.y) * count;
    vec2 cell = fract(at) - 0.5;
    float radius = sqrt(amount) * 0.72;
    float soft = 0.12;
    return smoothstep(radius + soft, radius - soft, length(cell)) * step(0.01, amount);
}

vec4 shade(vec2 uv) {
    vec2 q = (uv - 0.5) * vec2(u.resolution.x / u.resolution.y, 1.0);
    float count = p.screen;
    vec3 paper = vec3(0.97, 0.95, 0.9);
    float grain = fract(sin(dot(floor(uv * u.resolution * 0.5), vec2(12.9898, 78.233))) * 43758.5453);
    paper -= 0.03 * grain;
    vec3 colour = paper;
    for (int ink = 0; ink < 4; ink++) {
        float angle = ink == 0 ? 0.2617994 : (ink == 1 ? 1.3089969 : (ink == 2 ? 0.0 : 0.7853982));
        vec2 off = p.slip * vec2(cos(float(ink) * 2.1), sin(float(ink) * 2.1));
        vec2 at = q + off;
        float c = cos(angle), s = sin(angle);
        vec2 grid = vec2(c * at.x - s * at.y, s * at.x + c * at.y) * count;
        vec2 middle = (floor(grid) + 0.5) / count;
        vec2 back = vec2(c * middle.x + s * middle.y, c * middle.y - s * middle.x);
        vec4 amounts = inks(fruit(back, u.time));
        float amount = amounts[ink];
        float cover = dots(at, angle, count, amount);
        vec3 paint = ink == 0 ? vec3(0.0, 0.65, 0.9) : (ink == 1 ? vec3(0.9, 0.1, 0.5) : (ink == 2 ? vec3(1.0, 0.9, 0.05) : vec3(0.1)));
        colour *= mix(vec3(1.0), paint, cover);
    }
    return vec4(colour, 1.0);
}
