// Murmuration
//
// @episode 11 Murmuration
// @particles 24000
// @still 3
// @length 60
// @teaches Drawing dark on light with added light: trails count birds, and the picture takes their shadow from the sky
// @category Nature
// @tags particles, flock, sunset
//
// Starlings over a marsh at sunset. No bird knows the others: each keeps its own place in a cloud
// that is turned, drawn out and folded as it follows its leaders, and is late to follow, by an
// amount of its own; waves of alarm run through it. Light only adds up, so the trails hold how many
// birds a place has, and the sky is darkened by that.

// @param speed 1.0 0.2 2.5 How fast the flock flies
// @param spread 0.6 0.1 1.5 How large the cloud is
// @param alarm 0.7 0.0 1.5 How strong the waves are that run through it
// @param ink 0.8 0.1 2.0 How dark the birds are
// @param dusk 0.5 0.0 1.0 From golden hour to afterglow

struct Particle {
    float3 home;  // its place in the cloud, within a ball of radius 1
    float3 at;    // where it is: heights of the picture, and depth; the middle of the sky is 0
    float3 way;   // in a second
    float late;   // seconds behind the leaders
};

constant float horizon = 0.235; // of the picture's height

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

float2 rotate(float2 v, float a) {
    float c = cos(a), s = sin(a);
    return float2(v.x * c - v.y * s, v.x * s + v.y * c);
}

// Where the middle of the cloud flies: slow turns on faster ones.
float3 leader(float t) {
    return float3(0.34 * sin(t * 0.31) + 0.16 * sin(t * 0.73 + 1.0),
                  0.070 * sin(t * 0.47 + 0.6) + 0.040 * sin(t * 0.97),
                  0.27 * cos(t * 0.39) + 0.12 * sin(t * 0.61));
}

// The place of a bird in the cloud at a time: the cloud is drawn out along its way, twisted along
// its length, thrown into folds and pinched where an alarm passes.
float3 cloud(float3 home, float t, constant Params& p) {
    float3 q = home;
    float stretch = 0.55 + 0.40 * sin(t * 0.43) + 0.25 * sin(t * 0.29 + 2.0);
    q *= float3(1.0 + stretch, 0.62 - 0.20 * stretch, 0.60);
    q.yz = rotate(q.yz, 1.5 * q.x * sin(t * 0.37) + t * 0.5);
    q.y += 0.42 * sin(q.x * 1.9 + t * 0.83) * (0.70 + 0.30 * sin(t * 0.23 + 1.0));
    q.x += 0.30 * sin(q.y * 2.6 - t * 0.61) + 0.22 * sin(q.z * 3.1 + t * 0.9);
    float wave = sin(2.2 * q.x - 1.3 * q.z - t * 2.6);
    float pinch = p.alarm * smoothstep(0.35, 1.0, wave) * (0.65 + 0.35 * sin(t * 0.53));
    q *= 1.0 - 0.42 * pinch;
    q.xy = rotate(q.xy, 0.45 * sin(t * 0.27 + 0.5) + 0.25 * sin(t * 0.51));
    return leader(t) + q * 0.30 * p.spread;
}

Particle spawn(uint id, constant Params& p) {
    float n = float(id);
    // Even in a ball, but denser in its middle.
    float a = 6.2831853 * hash(float2(n, 1.5));
    float z = 2.0 * hash(float2(n, 2.5)) - 1.0;
    float r = pow(hash(float2(n, 3.5)), 0.45);
    Particle q;
    q.home = r * float3(sqrt(1.0 - z * z) * cos(a), sqrt(1.0 - z * z) * sin(a), z);
    q.late = 1.6 * pow(hash(float2(n, 4.5)), 2.0);
    q.at = cloud(q.home, 20.0 - q.late, p);
    q.way = float3(0.0);
    return q;
}

void update(thread Particle& q, uint id, constant Uniforms& u, constant Params& p) {
    float t = 20.0 + u.time * p.speed - q.late;
    float3 aim = cloud(q.home, t, p);
    // A bird is drawn to its place as by a spring, and never quite gets there.
    float k = q.late * 37.0;
    float3 jitter = 0.35 * float3(sin(t * 5.1 + k), sin(t * 4.3 + k * 2.0), sin(t * 4.7 + k * 3.0));
    float3 pull = (aim - q.at) * 9.0 - q.way * 4.2 + jitter * p.spread;
    q.way += pull * u.timeDelta * p.speed;
    q.at += q.way * u.timeDelta * p.speed;
}

float3 place(Particle q, constant Uniforms& u, constant Params& p) {
    float near = 1.0 / (1.35 + q.at.z);
    float2 shown = q.at.xy * near * 1.35;
    float across = min(u.resolution.y / u.resolution.x, 0.625); // tall pictures see all of the flight
    float2 uv = float2(0.52 + shown.x * across, 0.62 + shown.y);
    return float3(uv, max(0.0046 * near * 1.35, 1.6 / u.resolution.y));
}

// Two wings and a body, in as many pixels as there are.
float4 ink(Particle q, float2 at, constant Uniforms& u, constant Params& p) {
    float beat = sin(u.time * 18.0 * p.speed + q.late * 60.0);
    float2 way = normalize(q.way.xy + 1e-4);
    float2 b = float2(dot(at, way), dot(at, float2(-way.y, way.x)));
    float wing = smoothstep(0.34, 0.10, abs(b.x + 0.35 * abs(b.y))) * smoothstep(1.0, 0.55, abs(b.y) * (1.25 + 0.35 * beat));
    float near = 1.0 / (1.35 + q.at.z);
    float covered = 0.55 * wing * smoothstep(0.0, 0.55, near) * saturate(u.resolution.y * 0.0046 * near * 0.85);
    return float4(covered, covered * near, 0.0, 0.0);
}

// A little of the last place stays: wings blur.
float4 fade(float2 uv, Trails previous, constant Uniforms& u, constant Params& p) {
    return previous.at(uv) * 0.45;
}

float fbm(float2 q) {
    float sum = 0.0, weight = 0.5;
    for (int i = 0; i < 5; i++) {
        sum += weight * noise(q);
        q = rotate(q, 0.6) * 2.05 + 7.0;
        weight *= 0.5;
    }
    return sum;
}

float3 sky(float2 q, float t, constant Params& p) {
    float y = max(q.y - horizon, 0.0);
    float2 sun = float2(-0.30, horizon + mix(0.085, -0.03, p.dusk));
    float near = length((q - sun) * float2(0.75, 1.0));
    float3 low = mix(float3(1.00, 0.60, 0.24), float3(0.95, 0.34, 0.16), p.dusk);
    float3 high = mix(float3(0.30, 0.40, 0.56), float3(0.16, 0.19, 0.36), p.dusk);
    float3 colour = mix(low, float3(0.86, 0.50, 0.40), smoothstep(0.03, 0.26, y));
    colour = mix(colour, high, smoothstep(0.14, 0.72, y));
    colour += low * (0.75 * exp(-4.2 * near) + 0.30 * exp(-14.0 * near));
    // High cloud in rows, lit from below.
    float2 c = float2(q.x * 1.15 + t * 0.006, y * 1.4) / (0.35 + 0.9 * y);
    float veil = fbm(c * float2(1.6, 3.6) + float2(0.0, 2.0));
    float edge = smoothstep(0.42, 0.66, veil);
    float3 lit = mix(float3(1.05, 0.52, 0.28), float3(0.82, 0.42, 0.44), smoothstep(0.05, 0.5, y));
    float shade_ = smoothstep(0.50, 0.80, veil);
    colour = mix(colour, lit * (1.0 - 0.55 * shade_) * (0.75 + 0.6 * exp(-2.2 * near)), edge * 0.62 * smoothstep(0.02, 0.14, y));
    float disc = smoothstep(0.044, 0.041, length(q - sun)) * smoothstep(0.0, 0.004, q.y - horizon);
    return colour + disc * float3(1.3, 0.9, 0.55);
}

// Reeds against the water, all along the lower edge.
float reeds(float2 q, float t, float pixel) {
    float covered = 0.0;
    for (int k = 0; k < 4; k++) {
        float scale = 26.0 + 9.0 * float(k);
        float bend = 0.12 * (fract(float(k) * 0.618) - 0.5) + 0.02 * sin(t * 0.9 + q.x * 4.0 + float(k));
        float at = (q.x - bend * q.y * q.y * 18.0) * scale + 5.0 * float(k);
        float cell = floor(at);
        float h = hash(float2(cell, float(k)));
        float tall = 0.045 + 0.150 * h * h * smoothstep(0.15, 0.80, noise(float2(cell / scale * 3.1, 2.0)) + 0.18 * abs(q.x));
        float y = q.y / tall;
        float middle = 0.3 + 0.4 * hash(float2(cell, 3.0));
        float width = 0.060 * (1.0 - 0.8 * y);
        float x = abs(at - cell - middle);
        covered = max(covered, smoothstep(width + pixel * scale, width - pixel * scale, x) * smoothstep(1.02, 1.0, y));
        if (h > 0.6) covered = max(covered, smoothstep(1.2, 0.8, length(float2(x / 0.13, (y - 0.93) / 0.10))));
    }
    return covered;
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Trails trails) {
    float t = u.time;
    float pixel = 1.0 / u.resolution.y;
    float2 q = float2((uv.x - 0.5) * u.resolution.x / u.resolution.y, uv.y);
    // The marsh mirrors sky and birds; its ripples are small far away.
    float below = horizon - q.y;
    float2 at = q;
    float2 look = uv;
    if (below > 0.0) {
        float depth = 0.10 / (below + 0.010);
        float ripple = noise(float2(q.x * depth * 5.0, depth * 26.0 + t * 0.8)) + noise(float2(q.x * depth * 11.0 + 4.0, depth * 57.0 - t * 1.1)) - 1.0;
        at = float2(q.x + 0.010 * ripple * below * 6.0, horizon + below * 1.10 + ripple * (0.006 + 0.10 * below));
        look = float2(uv.x + 0.002 * ripple, at.y);
    }
    float3 colour = sky(at, t, p);
    float2 birds = trails.at(look).rg;
    float dark = exp(-1.9 * p.ink * birds.r);
    // Far birds take the colour of the air between.
    float3 bird = mix(float3(0.030, 0.022, 0.030), colour * 0.45, saturate(0.75 - birds.g / max(birds.r, 1e-3) * 0.75));
    colour = mix(bird, colour, dark);

    // The far bank: willows and a church, hazy.
    float y = at.y - horizon;
    float bank = 0.006 + 0.020 * noise(float2(q.x * 4.0, 1.0)) + 0.014 * noise(float2(q.x * 15.0, 2.0)) + 0.007 * noise(float2(q.x * 48.0, 3.0));
    float2 c = float2(q.x - 0.36, y);
    float church = max(abs(c.x) - 0.0085, c.y - 0.062);
    church = min(church, max(abs(c.x) - 0.0085 * (1.0 - (c.y - 0.062) / 0.038), max(c.y - 0.100, 0.062 - c.y)));
    church = min(church, max(abs(c.x - 0.024) - 0.018, c.y - 0.030 + 0.35 * abs(c.x - 0.024)));
    float solid = max(smoothstep(pixel, -pixel, y - bank), smoothstep(pixel, -pixel, church));
    float3 haze = mix(float3(0.23, 0.115, 0.085), float3(0.12, 0.065, 0.075), smoothstep(0.0, 0.9, abs(q.x + 0.30)));
    colour = mix(colour, haze * (0.55 + 0.45 * exp(-y * 40.0)), solid);

    if (below > 0.0) {
        colour *= mix(0.80, 0.38, smoothstep(0.0, 0.235, below));
        colour += float3(0.30, 0.17, 0.11) * exp(-below * 85.0) * 0.6;
        float3 dark_ = float3(0.010, 0.009, 0.012);
        colour = mix(colour, dark_, reeds(q, t, pixel));
    }
    colour += float3(0.20, 0.10, 0.06) * exp(-abs(below) * 48.0) * (0.5 + 0.5 * noise(float2(q.x * 2.2 - t * 0.02, 4.0)));
    colour = 1.0 - exp(-1.55 * colour);
    colour = pow(colour, float3(0.92));
    colour *= 1.0 - 0.65 * dot(uv - 0.5, uv - 0.5);
    return float4(colour + (hash(uv * u.resolution) - 0.5) / 255.0, 1.0);
}
