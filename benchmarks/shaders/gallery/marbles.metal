// Glass balls over a chequered floor, traced exactly with a few bounces.
// @param index 1.5 1.01 2
// @param speed 0.6 0 2

struct Ray {
    float3 from;
    float3 towards;
};

constant int count = 5;

float3 centre(int i, float time) {
    float a = float(i) * 6.2831853 / float(count) + time;
    return float3(1.4 * cos(a), 0.2 * sin(a * 3.0), 1.4 * sin(a));
}

float sphere(Ray ray, float3 at, float radius, float sideSign) {
    float3 q = ray.from - at;
    float b = dot(q, ray.towards), c = dot(q, q) - radius * radius, h = b * b - c;
    return h < 0.0 ? -1.0 : -b + sideSign * sqrt(h);
}

float3 world(Ray ray, float3 sun) {
    if (ray.towards.y < -0.001) {
        float t = (-0.75 - ray.from.y) / ray.towards.y;
        float2 q = ray.from.xz + ray.towards.xz * t;
        float2 cell = floor(q);
        float tile = fmod(abs(cell.x) + abs(cell.y), 2.0);
        float3 floor_ = mix(float3(0.12, 0.13, 0.2), float3(0.9, 0.88, 0.8), tile);
        return mix(float3(0.6, 0.7, 0.8), floor_, exp(-0.01 * dot(q, q)));
    }
    float close = max(dot(ray.towards, sun), 0.0);
    return mix(float3(0.6, 0.7, 0.8), float3(0.15, 0.3, 0.6), sqrt(max(ray.towards.y, 0.0))) + 2.0 * pow(close, 200.0);
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 at = (uv * 2.0 - 1.0) * float2(u.resolution.x / u.resolution.y, 1.0);
    float time = u.time * p.speed;
    float3 sun = normalize(float3(0.4, 0.8, 0.5));
    Ray ray;
    ray.from = float3(0.0, 0.9, -4.2);
    ray.towards = normalize(float3(at.x, at.y - 0.3, 1.9));
    float3 colour = float3(0.0), weight = float3(1.0);
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
        float3 middle = centre(which, time);
        float3 hit = ray.from + ray.towards * nearest;
        float3 normal = (hit - middle) / 0.6;
        float facing = max(dot(normal, -ray.towards), 0.0);
        float mirror = 0.04 + 0.96 * pow(1.0 - facing, 5.0);
        Ray reflected;
        reflected.from = hit;
        reflected.towards = reflect(ray.towards, normal);
        colour += weight * mirror * world(reflected, sun);
        float3 tint = 0.85 + 0.15 * cos(float3(0.0, 2.0, 4.0) + float(which) * 1.9);
        weight *= (1.0 - mirror) * tint;
        Ray inner;
        inner.from = hit;
        inner.towards = refract(ray.towards, normal, 1.0 / p.index);
        float out_ = sphere(inner, middle, 0.6, 1.0);
        float3 leaving = inner.from + inner.towards * out_;
        float3 back = refract(inner.towards, (middle - leaving) / 0.6, p.index);
        ray.from = leaving;
        ray.towards = dot(back, back) > 0.0 ? back : reflect(inner.towards, (middle - leaving) / 0.6);
    }
    colour += weight * world(ray, sun);
    return float4(sqrt(clamp(colour, 0.0, 1.0)), 1.0);
}
