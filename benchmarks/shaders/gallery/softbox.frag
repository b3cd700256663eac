// A room with one lamp, traced by a few random paths for each pixel; random numbers from integers.

uint nextRandom(inout uint state) {
    state = state * 747796405u + 2891336453u;
    uint word = ((state >> ((state >> 28) + 4u)) ^ state) * 277803737u;
    return (word >> 22) ^ word;
}

float random(inout uint state) {
    return float(nextRandom(state) >> 8) / 16777216.0;
}

vec3 around(vec3 normal, inout uint state) {
    float z = 2.0 * random(state) - 1.0, a = 6.2831853 * random(state);
    float r = sqrt(1.0 - z * z);
    return normalize(normal + 0.999 * vec3(r * cos(a), r * sin(a), z));
}

bool hitRoom(vec3 from, vec3 towards, out float t, out vec3 normal, out vec3 paint) {
    vec3 far = (sign(towards) - from) / towards;
    t = min(far.x, min(far.y, far.z));
    if (t == far.x) {
        normal = vec3(-sign(towards.x), 0.0, 0.0);
        paint = towards.x < 0.0 ? vec3(0.8, 0.25, 0.2) : vec3(0.25, 0.6, 0.3);
    } else if (t == far.y) {
        normal = vec3(0.0, -sign(towards.y), 0.0);
        paint = vec3(0.75);
    } else {
        normal = vec3(0.0, 0.0, -sign(towards.z));
        paint = vec3(0.7, 0.7, 0.75);
    }
    bool isLamp = false;
    vec3 hit = from + towards * t;
    if (t == far.y && towards.y > 0.0)
        isLamp = abs(hit.x) < 0.35 && abs(hit.z) < 0.35;
    for (int i = 0; i < 2; i++) {
        vec3 centre = i == 0 ? vec3(-0.4, -0.6, 0.3) : vec3(0.45, -0.7, -0.2);
        float radius = i == 0 ? 0.4 : 0.3;
        vec3 q = from - centre;
        float b = dot(q, towards), h = b * b - dot(q, q) + radius * radius;
        if (h > 0.0) {
            float near = -b - sqrt(h);
            if (near > 0.001 && near < t) {
                t = near;
                normal = (q + towards * near) / radius;
                paint = i == 0 ? vec3(0.9, 0.8, 0.5) : vec3(0.4, 0.5, 0.9);
                isLamp = false;
            }
        }
    }
    return isLamp;
}

vec4 shade(vec2 uv) {
    vec2 pixel = floor(uv * u.resolution);
    vec2 at = (uv * 2.0 - 1.0) * vec2(u.resolution.x / u.resolution.y, 1.0);
    uint state = uint(pixel.x) * 1973u + uint(pixel.y) * 9277u + u.frame * 26699u;
    vec3 sum = vec3(0.0);
    int paths = int(p.paths);
    for (int path = 0; path < paths; path++) {
        vec3 from = vec3(0.0, 0.0, -0.97), towards = normalize(vec3(at * 0.9, 1.0));
        vec3 weight = vec3(1.0);
        for (int bounce = 0; bounce < 3; bounce++) {
            float t;
            vec3 normal, paint;
            if (hitRoom(from, towards, t, normal, paint)) {
                sum += weight * p.lamp;
                break;
            }
            weight *= paint;
            from += towards * t + normal * 0.001;
            vec3 lampAt = vec3(0.7 * random(state) - 0.35, 0.999, 0.7 * random(state) - 0.35);
            vec3 toLamp = lampAt - from;
            float d2 = dot(toLamp, toLamp);
            toLamp *= inversesqrt(d2);
            float blocked;
            vec3 n2, c2;
            if (hitRoom(from, toLamp, blocked, n2, c2))
                sum += weight * p.lamp * max(dot(normal, toLamp), 0.0) * toLamp.y * 0.156 / d2;
            towards = around(normal, state);
        }
    }
    return vec4(sqrt(sum / float(paths)), 1.0);
}
