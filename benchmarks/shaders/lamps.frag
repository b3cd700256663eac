struct Lamp {
    vec3 at;
    vec3 colour;
};

void addLight(inout vec3 sum, vec3 q, vec3 n, Lamp lamp, float shine) {
    vec3 way = lamp.at - q;
    float square = dot(way, way);
    vec3 direction = way * inversesqrt(square);
    vec3 half_ = normalize(direction + vec3(0, 0, 1));
    sum += lamp.colour * (clamp(dot(n, direction), 0.0, 1.0) + pow(clamp(dot(n, half_), 0.0, 1.0), shine)) / (0.4 + square * 3.0);
}

vec4 shade(vec2 uv) {
    vec2 q = (uv - 0.5) * u.resolution / u.resolution.y * 2.0;
    Lamp lamps[8];
    for (int i = 0; i < 8; i++) {
        float a = float(i) * 0.785398 + u.time * 0.5;
        lamps[i].at = vec3(cos(a), sin(a * 1.3), 0.35);
        lamps[i].colour = 0.5 + 0.5 * cos(float(i) + vec3(0, 2, 4));
    }
    vec2 wave = vec2(cos(q.x * 12.0), cos(q.y * 12.0)) * 0.35;
    vec3 n = normalize(vec3(wave, 1.0));
    vec3 sum = vec3(0.02);
    int count = int(p.lamps);
    for (int i = 0; i < count; i++)
        addLight(sum, vec3(q, 0.0), n, lamps[i], p.shine);
    return vec4(sum / (1.0 + sum), 1.0);
}
