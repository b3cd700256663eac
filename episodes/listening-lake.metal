// Listening Lake
//
// @episode 6 Listening Lake
// @still 20
// @length 60
// @teaches Curtains of light: sheets summed up along a ray, mirrored in water that reads its own last frame
// @category Sound
// @tags aurora, reflection, night, spectrum
//
// An aurora over a lake with one lit window. The curtains are one winding sheet, repeated; a ray
// collects what it meets of them on eighteen heights. With sound the curtains rise, each stretch of
// the sky with its own part of the spectrum, and the low end lights them; in silence they wander by
// themselves. A picture in channel 0 lends them its colours.

// @param wander 0.5 0.0 2.0 How fast the curtains move
// @param light 0.9 0.0 2.0 Strength of the aurora
// @param rise 1.0 0.0 2.5 How far sound lifts the curtains
// @param ripple 0.5 0.0 1.5 How much wind there is on the water
// @param rose 0.6 0.0 1.0 Red in the upper part of the curtains

constant int heights = 18;
constant float horizon = -0.13;

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

// How much of the sheet there is at a place of the plane. It winds in three sines that do not fit
// each other, and stands again and again behind itself. Below 1, `sharp` spreads it out.
float sheet(float2 at, float t, float sharp) {
    float bend = 0.90 * sin(at.x * 0.55 + t * 0.30) + 0.42 * sin(at.x * 1.37 - t * 0.43 + 1.7) +
                 0.16 * sin(at.x * 3.10 + t * 0.71 + at.y * 0.6);
    float row = (at.y + bend) / 2.6 + 0.21;
    float which = floor(row);
    float d = abs(row - which - 0.5) * 2.6;
    float stripes = 0.70 + 0.30 * sin(at.x * 11.0 + 4.0 * bend + t * 0.9) * sin(at.x * 4.3 - t * 0.5 + which);
    float patch = 0.35 + 0.65 * smoothstep(-0.4, 0.9, sin(at.x * 0.42 + which * 2.4 + t * 0.11));
    return exp2(-14.0 * sharp * d) * sharp * stripes * patch;
}

float3 aurora(float3 ray, float t, float jitter, constant Params& p, Inputs in) {
    if (ray.y < 0.02) return float3(0.0);
    float azimuth = atan2(ray.x, ray.z);
    float heard = in.band(saturate(0.5 + azimuth * 0.45)) * p.rise;
    float breath = 0.5 + 0.5 * sin(azimuth * 2.3 + t * 0.37) * sin(azimuth * 1.1 - t * 0.21);
    float top = 1.15 + 0.5 * breath + 1.6 * heard;
    float3 green = float3(0.10, 0.95, 0.42), red = float3(0.85, 0.10, 0.60);
    float3 given = in.channel(0, float2(0.5 + azimuth * 0.4, ray.y * 1.4)).rgb;
    green = mix(green, given * 1.3, step(0.004, given.r + given.g + given.b));
    float3 sum = float3(0.0);
    for (int i = 0; i < heights; i++) {
        float x = (float(i) + jitter) / float(heights);
        float h = x * x; // of the curtain, 0 at its foot, where the most happens
        float level = 1.0 + h * top;
        // Where samples lie far apart the sheet must be thick enough to be met by one.
        float apart = 2.3 * x * top / (float(heights) * ray.y);
        float amount = sheet(ray.xz * (level / ray.y) * 1.15, t, 1.0 / (1.0 + 3.0 * apart));
        // A sharp bright foot, then a long fading.
        float profile = smoothstep(0.0, 0.06, h) * (0.85 * exp(-8.0 * h) + 0.60 * exp(-2.2 * h));
        float3 colour = mix(green, mix(green, red, p.rose), smoothstep(0.12, 0.55, h));
        sum += colour * (amount * profile * x);
    }
    float haze = smoothstep(0.03, 0.24, ray.y);
    float power = p.light * (0.85 + 0.9 * in.audio.x + 0.4 * in.audio.w);
    return sum * (36.0 / float(heights)) * haze * power * (1.0 + 0.9 * heard);
}

float3 stars(float2 q, float t, float high, float pixel) {
    float3 sum = float3(0.0);
    for (int layer = 0; layer < 2; layer++) {
        float scale = layer == 0 ? 34.0 : 75.0;
        float2 at = q * scale + float(layer) * 17.0;
        float2 cell = floor(at);
        float seed = hash(cell);
        float2 away = at - cell - 0.25 - 0.5 * float2(fract(seed * 91.7), fract(seed * 547.3));
        float size = max(0.05, pixel * scale * 0.75);
        float star = smoothstep(size, 0.0, length(away)) * (0.05 / size) * step(0.83, seed) * (layer == 0 ? 1.0 : 0.45);
        float twinkle = 0.75 + 0.25 * sin(t * (1.5 + 3.0 * fract(seed * 31.0)) + seed * 90.0) + high * seed;
        sum += star * twinkle * mix(float3(1.0, 0.82, 0.64), float3(0.70, 0.84, 1.0), fract(seed * 77.0)) *
               smoothstep(0.80, 1.0, seed);
    }
    return sum;
}

float ridge(float x, float scale, float seed) {
    float sum = 0.0, weight = 0.5;
    float at = x * scale + seed;
    for (int i = 0; i < 5; i++) {
        sum += weight * (1.0 - abs(2.0 * noise(float2(at, seed)) - 1.0));
        at = at * 2.07 + 3.1;
        weight *= 0.48;
    }
    return sum;
}

// Pines: a wood's upper edge. Each tree is a spire with ragged sides.
float pines(float x, float y, float scale, float seed) {
    float edge = 0.0;
    for (int k = 0; k < 2; k++) {
        float at = x * scale * (k == 0 ? 1.0 : 1.43) + float(k) * 0.37 + seed;
        float cell = floor(at);
        float tall = 0.45 + 0.55 * hash(float2(cell, seed));
        float f = abs(at - cell - 0.35 - 0.3 * hash(float2(cell, seed + 4.0)));
        float ragged = 0.10 * abs(fract(y * scale * 3.4 + hash(float2(cell, 2.0))) - 0.5);
        edge = max(edge, tall * (1.0 - 2.6 * (f - ragged)));
    }
    return edge / scale * 2.1;
}

// The sky at a height above the horizon.
float3 skyOver(float2 q, float y, float t, float jitter, float pixel, constant Params& p, Inputs in) {
    float3 night = mix(float3(0.010, 0.042, 0.062), float3(0.004, 0.008, 0.026), smoothstep(0.0, 0.55, y));
    float3 ray = normalize(float3(q.x, y + 0.02, 0.95));
    float3 curtains = aurora(ray, t * p.wander, jitter, p, in);
    float3 colour = night + curtains;
    colour += stars(q + float2(t * 0.0008, 0.0), t, in.audio.z, pixel) * 0.8 / (1.0 + 5.0 * dot(curtains, float3(0.33))) *
              smoothstep(0.03, 0.2, y);
    return colour;
}

// The far range, in the light of the sky.
float3 mountain(float2 q, float y, constant Params& p) {
    // Snow keeps to gullies, which run down both flanks; what faces left takes more of the sky.
    float lean = q.x + 0.5 * (noise(float2(q.x * 9.0, y * 14.0)) - 0.5) * y;
    float gully = noise(float2(lean * 44.0 + y * 26.0, y * 6.0)) * 0.6 + noise(float2(lean * 90.0 - y * 40.0, y * 15.0)) * 0.4;
    float face = ridge(lean - 0.012, 1.9, 5.0) - ridge(lean + 0.012, 1.9, 5.0);
    float snow = smoothstep(0.42, 0.75, gully + 0.9 * (y - 0.10)) * (0.34 + 0.5 * smoothstep(-0.05, 0.05, face));
    float3 sky = mix(float3(0.030, 0.07, 0.10), float3(0.045, 0.17, 0.13), saturate(p.light));
    float3 rock = float3(0.005, 0.012, 0.019) + snow * sky * smoothstep(0.02, 0.16, y) * 0.8;
    return mix(rock, float3(0.010, 0.034, 0.046), 0.85 * exp(-y * 17.0));
}

// Everything above the water; y is counted from the horizon.
float3 scene(float2 q, float t, float jitter, float pixel, constant Params& p, Inputs in) {
    float y = q.y - horizon;
    // A wood on the shore, and a range of mountains behind it.
    float near = 0.010 + 0.10 * ridge(q.x + 3.0, 1.1, 9.0) * smoothstep(-0.25, 0.95, abs(q.x - 0.12));
    float woods = near + pines(q.x, y, 34.0, 1.0);
    float peaks = 0.6 + 0.4 * sin(q.x * 2.1 + 0.6);
    float far = 0.010 + 0.27 * ridge(q.x, 1.9, 5.0) * peaks;
    float3 colour = float3(0.0);
    if (y > max(woods, far) - pixel) colour = skyOver(q, y, t, jitter, pixel, p, in);
    if (y > woods - pixel && y < far + pixel)
        colour = mix(colour, mountain(q, y, p), smoothstep(pixel, -pixel, y - far));
    colour = mix(colour, float3(0.003, 0.009, 0.013), smoothstep(pixel, -pixel, y - woods));

    // The cabin: a gable, a chimney's smoke, a window, and its light on the trees.
    float2 c = float2(q.x - 0.29, y - 0.004) / 0.030;
    float gable = max(abs(c.x) - 1.0, max(c.y - 1.5 + 0.75 * abs(c.x), -c.y));
    float3 warm = float3(1.0, 0.55, 0.20);
    colour += warm * 0.12 * exp(-2.1 * length(c - float2(0.0, 0.5)));
    colour = mix(colour, float3(0.006, 0.006, 0.008), smoothstep(pixel / 0.03, -pixel / 0.03, gable));
    float2 w = abs(c - float2(-0.15, 0.52));
    float frame = max(w.x - 0.34, w.y - 0.26);
    float cross = min(w.x, w.y);
    float lit = smoothstep(pixel / 0.03, -pixel / 0.03, frame) * mix(1.0, smoothstep(0.02, 0.06, cross), 0.7);
    colour += warm * lit * (1.5 + 0.15 * sin(t * 1.7) * sin(t * 2.9) + in.audio.w);
    return colour;
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Inputs in) {
    float side = min(u.resolution.x, u.resolution.y);
    float2 q = (uv - 0.5) * u.resolution / side;
    float2 pixel = uv * u.resolution;
    float jitter = fract(52.9829189 * fract(dot(pixel, float2(0.06711056, 0.00583715))));
    float t = u.time + 40.0;

    // Water mirrors what stands above it, from a place that the ripples push about. Far away they
    // are small and seen flat, so that they stretch lights upright.
    float below = horizon - q.y;
    bool water = below > 0.0;
    float2 at = q;
    float shadow = 1.0;
    if (water) {
        float depth = 0.16 / (below + 0.012);
        float2 lake = float2(q.x * depth, depth * 2.2);
        float swell = noise(lake * float2(3.0, 5.0) + float2(0.13, 0.31) * t) - 0.5;
        float fine = noise(lake * float2(9.0, 21.0) - float2(0.21, 0.52) * t) - 0.5;
        float push = p.ripple * (0.030 + 0.20 * below);
        at = float2(q.x + push * (0.35 * swell + 0.20 * fine), horizon + below * 1.06 + push * (0.9 * swell + 1.3 * fine));
        at.y = max(at.y, horizon + 0.002);
        shadow = 0.80 - 0.75 * below;
    }
    float3 colour = scene(at, t, jitter, 1.2 / side, p, in);
    if (water) {
        colour = colour * shadow * float3(0.78, 0.92, 1.0) + float3(0.002, 0.006, 0.010);
        float shore = exp(-below * 60.0);
        colour *= 1.0 - 0.55 * exp(-below * 220.0);
        colour += float3(0.006, 0.022, 0.028) * shore;
    }
    colour += float3(0.010, 0.034, 0.040) * exp(-abs(q.y - horizon) * 34.0) *
              (0.6 + 0.4 * noise(float2(q.x * 3.0 - t * 0.05, 3.0)));
    colour = 1.0 - exp(-2.5 * colour);
    colour = pow(colour, float3(0.72));
    colour *= 1.0 - 0.55 * dot(uv - 0.5, uv - 0.5);
    // The water keeps a part of its last frame, as a long exposure would.
    float3 last = in.previous(uv).rgb;
    if (water && last.r + last.g + last.b > 0.004) colour = mix(colour, last, 0.55);
    return float4(colour + (jitter - 0.5) / 255.0, 1.0);
}
