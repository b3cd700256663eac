// A room with one lamp, traced by a few random paths for each pixel; random numbers from integers.
// @param lamp 4 0 10
// @param paths 3 1 8

uint nextRandom(thread uint& state) {
    state = state * 747796405u + 2891336453u;
    uint word = ((state >> ((state >> 28) + 4u)) ^ state) * 277803737u;
    return (word >> 22) ^ word;
}

float random(thread uint& state) {
    return float(nextRandom(state) >> 8) / 16777216.0;
}

float3 around(float3 normal, thread uint& state) {
    float z = 2.0 * random(state) - 1.0, a = 6.2831853 * random(state);
    float r = sqrt(1.0 - z * z);
    return normalize(normal + 0.999 * float3(r * cos(a), r * sin(a), z));
}

bool hitRoom(float3 from, float3 towards, thread float& t, thread float3& normal, thread float3& paint) {
    float3 far = (sign(towards) - from) / towards;
    t = min(far.x, min(far.y, far.z));
    if (t == far.x) {
        normal = float3(-sign(towards.x), 0.0, 0.0);
        paint = towards.x < 0.0 ? float3(0.8, 0.25, 0.2) : float3(0.25, 0.6, 0.3);
    } else if (t == far.y) {
        normal = float3(0.0, -sign(towards.y), 0.0);
        paint = float3(0.75);
    } else {
        normal = float3(0.0, 0.0, -sign(towards.z));
        paint = float3(0.7, 0.7, 0.75);
    }
    bool isLamp = false;
    float3 hit = from + towards * t;
    if (t == far.y && towards.y > 0.0)
        isLamp = abs(hit.x) < 0.35 && abs(hit.z) < 0.35;
    for (int i = 0; i < 2; i++) {
        float3 centre = i == 0 ? float3(-0.4, -0.6, 0.3) : float3(0.45, -0.7, -0.2);
        float radius = i == 0 ? 0.4 : 0.3;
        float3 q = from - centre;
        float b = dot(q, towards), h = b * b - dot(q, q) + radius * radius;
        if (h > 0.0) {
            float near = -b - sqrt(h);
            if (near > 0.001 && near < t) {
                t = near;
                normal = (q + towards * near) / radius;
                paint = i == 0 ? float3(0.9, 0.8, 0.5) : float3(0.4, 0.5, 0.9);
                isLamp = false;
            }
        }
    }
    return isLamp;
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 pixel = floor(uv * u.resolution);
    float2 at = (uv * 2.0 - 1.0) * float2(u.resolution.x / u.resolution.y, 1.0);
    uint state = uint(pixel.x) * 1973u + uint(pixel.y) * 9277u + u.frame * 26699u;
    float3 sum = float3(0.0);
    int paths = int(p.paths);
    for (int path = 0; path < paths; path++) {
        float3 from = float3(0.0, 0.0, -0.97), towards = normalize(float3(at * 0.9, 1.0));
        float3 weight = float3(1.0);
        for (int bounce = 0; bounce < 3; bounce++) {
            float t;
            float3 normal, paint;
            if (hitRoom(from, towards, t, normal, paint)) {
                sum += weight * p.lamp;
                break;
            }
            weight *= paint;
            from += towards * t + normal * 0.001;
            float3 lampAt = float3(0.7 * random(state) - 0.35, 0.999, 0.7 * random(state) - 0.35);
            float3 toLamp = lampAt - from;
            float d2 = dot(toLamp, toLamp);
            toLamp *= rsqrt(d2);
            float blocked;
            float3 n2, c2;
            if (hitRoom(from, toLamp, blocked, n2, c2))
                sum += weight * p.lamp * max(dot(normal, toLamp), 0.0) * toLamp.y * 0.156 / d2;
            towards = around(normal, state);
        }
    }
    return float4(sqrt(sum / float(paths)), 1.0);
}
