// Firefly Meadow
//
// @episode 10 Firefly Meadow
// @particles 6000
// @still 7
// @length 60
// @teaches Four channels as four pictures: trails near, farther and far, and the glow that lights the grass
// @category Nature
// @tags particles, long exposure, dusk, sound
//
// A meadow after sunset, as a camera sees it whose shutter stays open. Fireflies wander between the
// grasses and write short strokes of light while they flash; their neighbours' flashes pull at their
// own, so that waves of light cross the meadow. The picture of their trails has no colours: red
// holds the near ones, green the middle, blue the far, so that each layer of grass stands between
// two of them, and alpha holds their glow.

// @param glow 0.9 0.0 2.0 Brightness of the fireflies
// @param trace 0.6 0.0 1.0 How long their strokes stay
// @param together 0.7 0.0 1.0 How much they flash in waves
// @param wind 0.5 0.0 1.5 How much the grass moves
// @param volume 0.5 0.0 1.0 Loudness of the crickets

struct Particle {
    float3 at;    // across, above the ground, away from us
    float3 way;   // how far it goes in a second
    float beat;   // where it is between two flashes, 0 to 1
    float seed;   // its own number, 0 to 1
};

constant float horizon = 0.40;   // of the picture's height
constant float eyeHeight = 0.62;
constant float nearest = 1.15, farthest = 7.5;
constant float wide = 1.45;      // half the width of what is seen at distance 1

float hash(float2 cell) {
    float3 q = fract(float3(cell.xyx) * 0.1031);
    q += dot(q, q.yzx + 33.33);
    return fract((q.x + q.y) * q.z);
}

float noise(float2 q) {
    float2 cell = floor(q);
    float2 f = q - cell;
    float2 s = f * f * (3.0 - 2.0 * f);
    float2 e = float2(0.0, 1.0);
    return mix(mix(hash(cell), hash(cell + e.yx), s.x),
               mix(hash(cell + e.xy), hash(cell + e.yy), s.x), s.y);
}

Particle spawn(uint id, constant Params& p) {
    float n = float(id);
    Particle q;
    q.seed = hash(float2(n, 1.5));
    float away = mix(nearest, farthest, pow(hash(float2(n, 2.5)), 1.15));
    float high = 0.06 + 1.25 * pow(hash(float2(n, 3.5)), 1.6);
    q.at = float3((hash(float2(n, 4.5)) * 2.0 - 1.0) * wide * away, high, away);
    q.way = float3(0.0);
    q.beat = fract(q.seed * 17.0 + 0.35 * sin(q.at.x * 0.8) + 0.1 * q.at.z);
    return q;
}

// A flash is a third of a second in a beat of some four; 0 is dark.
float flash(float beat) {
    return smoothstep(0.0, 0.03, beat) * smoothstep(0.15, 0.06, beat);
}

void update(thread Particle& q, uint id, constant Uniforms& u, constant Params& p) {
    float t = u.time, k = q.seed * 100.0;
    // They wander, keep low, and rise while they flash: their strokes are hooks.
    float lit = flash(q.beat);
    float3 pull = float3(sin(t * 0.7 + k) + 0.7 * sin(t * 1.9 + k * 3.1), 0.9 * sin(t * 1.1 + k * 1.7),
                         0.6 * sin(t * 0.5 + k * 2.3)) * 0.16;
    pull.y += 0.24 * lit + 0.22 * (0.14 + 0.75 * fract(q.seed * 7.0) * fract(q.seed * 13.0) - q.at.y);
    pull.x += 0.10 * p.wind * sin(t * 0.4 + q.at.x * 0.5);
    q.way += (pull - q.way * 1.1) * u.timeDelta;
    q.at += q.way * u.timeDelta;
    q.at.y = max(q.at.y, 0.03);
    float side = wide * q.at.z;
    if (abs(q.at.x) > side) q.at.x -= 2.0 * side * sign(q.at.x);
    // The beat hurries where the wave of the others is ahead of it.
    float wave = fract(t * 0.22 - 0.10 * q.at.x + 0.05 * q.at.z);
    float ahead = fract(wave - q.beat + 0.5) - 0.5;
    float rate = 0.20 + 0.05 * q.seed + 0.10 * p.together * ahead;
    q.beat = fract(q.beat + rate * u.timeDelta);
}

float3 place(Particle q, constant Uniforms& u, constant Params& p) {
    float2 shown = float2(q.at.x, q.at.y - eyeHeight) / q.at.z;
    float2 uv = float2(0.5 + shown.x * 0.80 * u.resolution.y / u.resolution.x, horizon + shown.y * 0.80);
    float size = flash(q.beat) > 0.0 ? 0.075 / q.at.z + 0.004 : 0.0;
    return float3(uv, size);
}

float4 ink(Particle q, float2 at, constant Uniforms& u, constant Params& p) {
    float square = dot(at, at);
    float core = exp(-square * 70.0), halo = max(1.0 - square, 0.0);
    halo *= halo * halo;
    float light = flash(q.beat) * (0.7 + 0.6 * fract(q.seed * 31.0));
    float body = light * (core + 0.020 * halo);
    float3 depth = q.at.z < 2.3 ? float3(1.0, 0.0, 0.0) : q.at.z < 4.4 ? float3(0.0, 1.0, 0.0) : float3(0.0, 0.0, 1.0);
    return float4(depth * body, light * halo * 0.10);
}

float4 fade(float2 uv, Trails previous, constant Uniforms& u, constant Params& p) {
    float keep = mix(0.80, 0.988, p.trace);
    return previous.at(uv) * float4(float3(keep), 0.94);
}

// Grass at one distance: how much of it covers a pixel. x and y are in heights of the picture.
float grassAt(float2 q, float base, float tall, float scale, float seed, float t, float soft, constant Params& p) {
    float covered = 0.0;
    float up = max(q.y - base, 0.0) / tall;
    float gust = p.wind * (0.16 * sin(t * 1.3 + q.x * 5.0) + 0.05 * sin(t * 3.1 + q.x * 17.0));
    // Five sowings, each bent its own way; a bend for a whole stretch lets blades leave their cells.
    for (int k = 0; k < 5; k++) {
        float way = (fract(float(k) * 0.618 + seed * 0.1) - 0.5) * 1.3 + 0.5 * (noise(float2(q.x * 4.0, seed + float(k))) - 0.5);
        float bent = q.x - tall * (way * 0.75 + gust) * up * up;
        float at = bent * scale * (1.0 + 0.13 * float(k)) + 3.7 * float(k) + seed;
        float cell = floor(at);
        float h = hash(float2(cell, seed + float(k)));
        float reach = tall * (0.45 + 0.55 * h) * (0.75 + 0.45 * noise(float2(cell / scale * 6.0, seed)));
        float y = (q.y - base) / reach;
        float middle = 0.5 + 0.45 * (hash(float2(cell, seed + 9.0)) - 0.5) + (h - 0.5) * 0.25 * y * abs(y);
        float width = 0.115 * (1.0 - y * y);
        float blade = smoothstep(width + soft * scale, width - soft * scale, abs(at - cell - middle));
        // An ear on every sixth.
        if (h > 0.82) {
            float2 ear = float2((at - cell - middle) / 0.085, (y - 0.93) * 7.0);
            blade = max(blade, smoothstep(1.0 + soft * 30.0, 1.0 - soft * 30.0, length(ear)));
        }
        covered = max(covered, blade * smoothstep(1.04, 1.0, y));
    }
    float sod = base + tall * (0.05 + 0.16 * noise(float2(q.x * 7.0, seed)));
    return max(covered, smoothstep(soft * 3.0, -soft * 3.0, q.y - sod));
}

// An oak on the left and a wood along the horizon.
float trees(float2 q, float pixel) {
    float wood = 0.014 + 0.030 * noise(float2(q.x * 5.0, 3.0)) + 0.016 * noise(float2(q.x * 19.0, 5.0)) + 0.008 * noise(float2(q.x * 55.0, 7.0));
    float covered = smoothstep(pixel, -pixel, q.y - horizon - wood);
    float2 c = q - float2(-0.50, horizon);
    float rough = 0.060 * (noise(c * 15.0) - 0.5) + 0.050 * (noise(c * 34.0 + 3.0) - 0.5) +
                  0.034 * (noise(c * 85.0) - 0.5) + 0.024 * (noise(c * 190.0) - 0.5);
    float crown = min(min(length((c - float2(0.0, 0.245)) * float2(0.80, 1.0)) - 0.095, length(c - float2(-0.125, 0.185)) - 0.060),
                      min(length(c - float2(0.125, 0.200)) - 0.062, length(c - float2(0.035, 0.315)) - 0.055));
    crown = min(crown, min(length(c - float2(-0.065, 0.285)) - 0.055, length(c - float2(0.09, 0.265)) - 0.06));
    covered = max(covered, smoothstep(pixel * 2.0, -pixel * 2.0, crown + rough));
    float trunk = abs(c.x + 0.012 * sin(c.y * 22.0)) - 0.014 - 0.030 * exp(-c.y * 34.0);
    return max(covered, smoothstep(pixel, -pixel, trunk) * step(c.y, 0.22));
}

float3 dusk(float2 q, float t, float pixel) {
    float y = max(q.y - horizon, 0.0);
    float3 colour = mix(float3(0.60, 0.24, 0.12), float3(0.13, 0.15, 0.20), smoothstep(0.0, 0.15, y));
    colour = mix(colour, float3(0.022, 0.052, 0.105), smoothstep(0.07, 0.38, y));
    colour *= 0.55 + 0.55 * exp(-1.8 * abs(q.x - 0.35));
    float bars = smoothstep(0.55, 0.8, noise(float2(q.x * 2.1 + t * 0.004, y * 26.0))) * exp(-y * 9.0);
    colour = mix(colour, float3(0.10, 0.06, 0.085), bars * 0.6);
    float2 cell = floor(q * 42.0);
    float seed = hash(cell);
    float2 away = q * 42.0 - cell - 0.3 - 0.4 * float2(fract(seed * 91.0), fract(seed * 347.0));
    float size = max(0.05, 42.0 * pixel);
    colour += step(0.80, seed) * smoothstep(size, 0.0, length(away)) * smoothstep(0.12, 0.40, y) * 0.5 * fract(seed * 57.0) * 0.05 / size;
    float2 m = q - float2(0.44, 0.80);
    float moon = smoothstep(0.036 + pixel, 0.036 - pixel, length(m)) * smoothstep(0.034 - pixel, 0.034 + pixel * 2.0, length(m - float2(-0.014, 0.010)));
    colour += float3(1.0, 0.93, 0.80) * (moon * 0.9 + 0.035 * exp(-9.0 * length(m)));
    return colour;
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Trails trails) {
    float t = u.time;
    float pixel = 1.0 / u.resolution.y;
    float2 q = float2((uv.x - 0.5) * u.resolution.x / u.resolution.y, uv.y);
    float4 light = trails.at(uv);
    // The glow around a place, for the grass.
    float around = light.a;
    for (int i = 0; i < 4; i++) {
        float a = float(i) * 1.5708 + 0.6;
        around += trails.at(uv + float2(cos(a), sin(a)) * 0.030 * float2(u.resolution.y / u.resolution.x, 1.0)).a;
    }
    around = around * 0.2 * p.glow;
    float3 fly = float3(0.80, 1.00, 0.22), hot = float3(1.0, 0.98, 0.62);
    light.rgb *= p.glow;

    float3 colour = mix(dusk(q, t, pixel), float3(0.010, 0.017, 0.021), trees(q, pixel));
    // The meadow between horizon and the grass in front, with mist over it.
    float ground = smoothstep(pixel, -pixel, q.y - horizon + 0.004);
    float depth = (horizon - q.y) / horizon;
    float3 field = mix(float3(0.075, 0.070, 0.064), float3(0.034, 0.044, 0.042), smoothstep(0.0, 0.40, depth));
    field *= 0.75 + 0.5 * noise(float2(q.x * 9.0 / (depth + 0.06), 2.2 / (depth + 0.05)));
    colour = mix(colour, field, ground);
    float mist = exp(-abs(q.y - horizon + 0.012) * 38.0) * (0.45 + 0.55 * noise(float2(q.x * 2.6 - t * 0.03, t * 0.02)));
    colour += float3(0.085, 0.080, 0.085) * mist;
    colour += (fly * 0.9 + hot * light.b) * light.b * 1.2;

    float far = grassAt(q, 0.255, 0.085, 46.0, 1.0, t, pixel * 0.8, p);
    // Tips take what is left of the daylight; the glow comes from everywhere.
    float3 last = float3(0.095, 0.062, 0.050), green = float3(0.034, 0.058, 0.012);
    float tip = saturate((q.y - 0.255) / 0.085);
    float3 grass = float3(0.016, 0.024, 0.022) + last * 0.45 * tip * tip + green * around * 7.0;
    colour = mix(colour, grass, far);
    // Mist lies between the layers, so that each one's tips stand before the next one's feet.
    float3 air = float3(0.042, 0.056, 0.056) + green * around * 5.0;
    colour = mix(colour, air, 0.75 * smoothstep(0.335, 0.17, q.y));
    colour += (fly * 0.9 + hot * light.g) * light.g * 1.2;

    float middle = grassAt(q, 0.125, 0.155, 24.0, 5.0, t, pixel * 1.2, p);
    tip = saturate((q.y - 0.125) / 0.155);
    grass = float3(0.008, 0.015, 0.014) + last * 0.32 * tip * tip + green * around * 8.0;
    colour = mix(colour, grass, middle);
    colour = mix(colour, air * 0.62, 0.75 * smoothstep(0.235, 0.0, q.y));
    colour += (fly * 0.9 + hot * light.r) * light.r * 1.3;

    float front = grassAt(q, -0.055, 0.255, 9.5, 8.0, t, pixel * 5.0, p);
    tip = saturate((q.y + 0.055) / 0.255);
    colour = mix(colour, float3(0.003, 0.006, 0.006) + last * 0.13 * tip * tip + green * around * 3.0, front);
    colour += fly * around * 0.35;

    colour = 1.0 - exp(-2.0 * colour);
    colour = pow(colour, float3(0.74));
    colour *= 1.0 - 0.6 * dot(uv - 0.5, uv - 0.5);
    return float4(colour + (hash(uv * u.resolution) - 0.5) / 255.0, 1.0);
}

// Crickets: each one tone, cut into quick pulses, cut into chirps; and the air.
float cricket(float t, float pitch, float pulses, float period, float offset) {
    float chirp = fract(t / period + offset) * period;
    float on = smoothstep(0.0, 0.02, chirp) * smoothstep(0.36 * period, 0.30 * period, chirp);
    float pulse = 0.5 - 0.5 * cos(6.2831853 * fract(pulses * fract(t)));
    return sin(6.2831853 * fract(pitch * fract(t))) * pulse * pulse * on; // pitches are whole hertz
}

float2 sound(float t, constant Params& p) {
    float2 out = float2(0.0);
    out += cricket(t, 4200.0, 31.0, 0.92, 0.0) * float2(0.30, 0.12);
    out += cricket(t, 4650.0, 36.0, 1.13, 0.4) * float2(0.08, 0.26);
    out += cricket(t, 3850.0, 28.0, 1.37, 0.7) * float2(0.16, 0.16);
    float slow = 0.6 + 0.4 * sin(6.2831853 * t / 16.0);
    float s = fmod(t, 32.0); // small enough to tell samples apart
    float air = noise(float2(s * 420.0, 3.0)) + noise(float2(s * 970.0, 7.0)) - 1.0;
    out += air * 0.10 * slow;
    return out * 0.5 * p.volume;
}
