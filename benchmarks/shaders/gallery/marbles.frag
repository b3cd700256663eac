// Glass balls over a chequered floor, traced exactly with a few bounces.

struct Ray {
    vec3 from;
    vec3 towards;
};

const int count = 5;

vec3 centre(int i, float time) {
    float a = float(i) * 6.2831853 / float(count) + time;
    return vec3(1.4 * cos(a), 0.2 * sin(a * 3.0), 1.4 * sin(a));
}

float sphere(Ray ray, vec3 at, float radius, float sideSign) {
    vec3 q = ray.from - at;
    float b = dot(q, ray.towards), c = dot(q, q) - radius * radius, h = b * b - c;
    return h < 0.0 ? -1.0 : -b + sideSign * sqrt(h);
}

vec3 world(Ray ray, vec3 sun) {
    if (ray.towards.y < -0.001) {
        float t = (-0.75 - ray.from.y) / ray.towards.y;
        vec2 q = ray.from.xz + ray.towards.xz * t;
        vec2 cell = floor(q);
        float tile = mod(abs(cell.x) + abs(cell.y), 2.0);
        vec3 floor_ = mix(vec3(0.12, 0.13, 0.2), vec3(0.9, 0.88, 0.8), tile);
        return mix(vec3(0.6, 0.7, 0.8), floor_, exp(-0.01 * dot(q, q)));
    }
    float close = max(dot(ray.towards, sun), 0.0);
    return mix(vec3(0.6, 0.7, 0.8), vec3(0.15, 0.3, 0.6), sqrt(max(ray.towards.y, 0.0))) + 2.0 * pow(close, 200.0);
}

vec4 shade(vec2 uv) {
    vec2 at = (uv * 2.0 - 1.0) * vec2(u.resolution.x / u.resolution.y, 1.0);
    float time = u.time * p.speed;
    vec3 sun = normalize(vec3(0.4, 0.8, 0.5));
    Ray ray;
    ray.from = vec3(0.0, 0.9, -4.2);
    ray.towards = normalize(vec3(at.x, at.y - 0.3, 1.9));
    vec3 colour = vec3(0.0), weight = vec3(1.0);
    for (int bounce = 0; bounce < 4; bounce++) {
        float nearest = 100.0;
        int which = -1;
        for (int i = 0; i < count; i++) {
            float t = sphere(ray, centre(i, time), 0.6, -1.0);
            if (t > 0.001 && t < nearest) {
                nearest = t;
                which = i;
            }
        }
        if (which < 0)
            break;
        vec3 middle = centre(which, time);
        vec3 hit = ray.from + ray.towards * nearest;
        vec3 normal = (hit - middle) / 0.6;
        float facing = max(dot(normal, -ray.towards), 0.0);
        float mirror = 0.04 + 0.96 * pow(1.0 - facing, 5.0);
        Ray reflected;
        reflected.from = hit;
        reflected.towards = reflect(ray.towards, normal);
        colour += weight * mirror * world(reflected, sun);
        vec3 tint = 0.85 + 0.15 * cos(vec3(0.0, 2.0, 4.0) + float(which) * 1.9);
        weight *= (1.0 - mirror) * tint;
        Ray inner;
        inner.from = hit;
        inner.towards = refract(ray.towards, normal, 1.0 / p.index);
        float out_ = sphere(inner, middle, 0.6, 1.0);
        vec3 leaving = inner.from + inner.towards * out_;
        vec3 back = refract(inner.towards, (middle - leaving) / 0.6, p.index);
        ray.from = leaving;
        ray.towards = dot(back, back) > 0.0 ? back : reflect(inner.towards, (middle - leaving) / 0.6);
    }
    colour += weight * world(ray, sun);
    return vec4(sqrt(clamp(colour, 0.0, 1.0)), 1.0);
}
