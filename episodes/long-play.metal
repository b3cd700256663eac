// Long Play
//
// @episode 5 Long Play
// @still 12
// @length 60
// @teaches Highlights on brushed things: light on grooves, the colours of a grating, and reading Inputs
// @category Sound
// @tags anisotropy, diffraction, record, spectrum, sound
//
// A record turns under a lamp. Vinyl is a mirror with grooves, so a lamp does not make a spot on it
// but two fans of light that meet in the middle; they sway, because no record lies quite flat. What
// is heard glows in the grooves, low notes inside, high ones at the rim; in silence the needle draws
// its own faint trace. A picture in channel 0 becomes the label.
//
// The record has a tune of its own, eight slow bars that come round, with the crackle and the wow of
// its pressing. Turned faster it plays higher, as records do.

// @param turn 33.3 0.0 78.0 Revolutions in a minute
// @param warp 0.8 0.0 1.5 How far the record is from flat
// @param rainbow 0.55 0.0 1.0 Colours of the grooves' grating
// @param glow 0.8 0.0 2.0 Light of what is heard, in the grooves
// @param lamp 0.8 0.0 1.5 Brightness of the lamp
// @param volume 0.5 0.0 1.0 Loudness of the tune

constant float rim = 1.50;     // radii, about a tenth of a metre each
constant float run = 1.43;     // the outermost groove
constant float deadWax = 0.63; // inside of it no groove is cut
constant float label = 0.51;
constant float3 pivot = float3(1.98, 0.21, 0.86); // of the arm

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

// The two lights of the room: a warm lamp to the left, a window's evening to the right and behind.
struct Light {
    float3 place, colour;
};
constant Light lights[2] = {{float3(-2.6, 2.7, 1.5), float3(1.00, 0.62, 0.30)},
                            {float3(3.4, 2.9, 3.6), float3(0.26, 0.42, 0.80)}};

// Walnut: rings of a long trunk, cut lengthwise.
float3 wood(float2 at) {
    float2 q = float2(at.x * 0.55, at.y * 3.4);
    float bend = noise(q * float2(0.9, 0.7) + 3.0);
    float grain = 0.5 + 0.5 * sin((q.y + 1.8 * bend) * 5.0 + noise(q * 3.0) * 2.0);
    float fibre = noise(float2(at.x * 5.0, at.y * 95.0)) * 0.6 + noise(float2(at.x * 11.0, at.y * 190.0)) * 0.4;
    float3 colour = mix(float3(0.075, 0.034, 0.017), float3(0.20, 0.096, 0.046), grain * 0.7 + 0.3 * bend);
    return colour * (0.68 + 0.5 * fibre);
}

// A colour of the rainbow; x runs from 0, violet, to 1, red, and is dark outside.
float3 spectral(float x) {
    float3 d = (x - float3(0.78, 0.50, 0.22)) * 4.2;
    return saturate(1.0 - d * d);
}

// How much the arm hides of what lies at `from` in a direction: 0 in the open. The arm is a rod;
// the shadow of something near is sharper than that of something far.
float rod(float3 from, float3 direction, float3 a, float3 b, float radius, float softness,
          thread float& along, thread float& distance_) {
    float3 ab = b - a, ao = from - a;
    float dd = dot(direction, direction), db = dot(direction, ab), bb = dot(ab, ab);
    float s = saturate((dot(ab, ao) * dd - dot(direction, ao) * db) / max(bb * dd - db * db, 1e-4));
    float t = max(dot(a + ab * s - from, direction) / dd, 0.0);
    s = saturate(dot(from + direction * t - a, ab) / bb);
    float3 gap = from + direction * t - (a + ab * s);
    along = s;
    distance_ = t;
    float edge = softness * t + 0.0005;
    return smoothstep(radius + edge, max(radius - edge, 0.0), length(gap));
}

// What lies under the pixel, and where: everything but the arm is flat.
struct Table {
    float2 at;
    float radius, angle, pixel;
};

// The label when nobody gives us a picture: a sunburst with two rings of type.
float3 printed(float2 q, float pixel) {
    float r = length(q) / label;
    float a = atan2(q.y, q.x) / 6.2831853 + 0.5;
    float w = pixel / label * 1.5 + 0.004;
    float3 cream = float3(0.80, 0.62, 0.40), rust = float3(0.58, 0.115, 0.035), ink = float3(0.045, 0.02, 0.02);
    float ray = fract(a * 18.0);
    float half_ = 0.5 * smoothstep(0.30, 0.95, r);
    float burst = smoothstep(half_ + w * 3.0, half_ - w * 3.0, abs(ray - 0.5));
    float3 colour = mix(rust, cream, burst * step(q.y, 0.0) * smoothstep(0.33, 0.33 + w, r));
    colour = mix(colour, cream, smoothstep(w, -w, abs(r - 0.92) - 0.012));
    colour = mix(colour, cream, smoothstep(w, -w, abs(r - 0.31) - 0.016));
    // Type too small to read: words of random length in two lines on the upper half.
    for (int line = 0; line < 2; line++) {
        float row = line == 0 ? 0.74 : 0.58;
        float letter = floor(a * (line == 0 ? 150.0 : 120.0));
        float word = step(0.30, hash(float2(floor(letter / 3.0), row))) * step(0.25, hash(float2(letter, row)));
        float arc = smoothstep(0.205, 0.200, abs(a - 0.75));
        colour = mix(colour, cream, word * arc * smoothstep(w, -w, abs(r - row) - 0.035));
    }
    colour = mix(colour, ink, smoothstep(w, -w, r - 0.075));
    return colour;
}

// Light that comes off the grooves. A groove's walls are turned about the groove, so they send light
// to every eye that sees lamp and eye at the same angle to the groove's direction.
float3 grooves(Table here, float3 eye, float3 place, float3 up, float t, float cut, constant Params& p) {
    float2 radial = here.at / here.radius;
    float3 around = normalize(float3(-radial.y, 0.0, radial.x));
    around = normalize(around - up * dot(around, up));
    float3 outward = float3(radial.x, 0.0, radial.y);
    float3 colour = float3(0.0);
    for (int i = 0; i < 2; i++) {
        float3 way = lights[i].place - place;
        float square = dot(way, way);
        float3 l = way * rsqrt(square);
        float3 h = normalize(l + eye);
        float across = dot(around, h);
        float fan = exp(-across * across * 300.0) + 0.22 * exp(-across * across * 36.0);
        // Path differences between neighbouring grooves give the colours.
        float order = abs(dot(outward, l + eye)) * 1.15;
        float3 colours = spectral(fract(order * 1.6)) * smoothstep(0.05, 0.3, order);
        float3 tint = mix(float3(1.0), 0.25 + 1.5 * colours, p.rainbow);
        float mirror = pow(saturate(dot(h, up)), 700.0) * 3.0;
        float3 power = lights[i].colour * (i == 0 ? p.lamp * 7.0 : 9.5) / (1.0 + 0.6 * square);
        colour += power * (fan * tint * cut * 0.50 + mirror);
    }
    return colour;
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Inputs in) {
    float side = min(u.resolution.x, u.resolution.y);
    float2 q = (uv - 0.5) * u.resolution / side;
    float t = u.time;

    // The camera leans over the plinth and breathes a little.
    float3 eye = float3(-0.62 + 0.10 * sin(t * 0.11), 2.05 + 0.06 * sin(t * 0.17), -2.30);
    float3 target = float3(0.20, 0.0, -0.10);
    float3 forward = normalize(target - eye);
    float3 right = normalize(cross(float3(0.0, 1.0, 0.0), forward));
    float3x3 camera = float3x3(right, cross(forward, right), forward);
    float3 ray = normalize(camera * float3(q, 1.06));

    float height = ray.y < -0.01 ? eye.y / -ray.y : 200.0;
    float3 place = eye + ray * height;
    Table here;
    here.at = place.xz;
    here.radius = length(here.at);
    here.angle = atan2(here.at.y, here.at.x);
    here.pixel = height / (1.06 * side * max(-ray.y, 0.15));
    float turned = -t * p.turn * 0.10471976; // radians

    // The needle: from the pivot to the groove that is played, which wanders inwards.
    float played = mix(run, deadWax, fract(t / 1200.0 + 0.28));
    float between = length(pivot.xz), reach = 1.95;
    float elbow = acos(clamp((between * between + played * played - reach * reach) / (2.0 * between * played), -1.0, 1.0));
    float2 stylus = played * rotate(pivot.xz / between, -elbow);
    float3 tip = float3(stylus.x, 0.03, stylus.y);
    float3 head = mix(tip, pivot, 0.12) + float3(0.0, 0.05, 0.0);

    float3 view = -ray;
    float3 colour = float3(0.0);
    float open = 1.0; // what the arm leaves of the lamp's light
    float s, d;
    open -= 0.85 * rod(place, lights[0].place - place, head, pivot, 0.028, 0.05, s, d);
    open -= 0.85 * rod(place, lights[0].place - place, tip, head, 0.05, 0.05, s, d);
    open = max(open, 0.12);

    float3 toLamp = lights[0].place - place;
    float pool = p.lamp * 5.0 * normalize(toLamp).y / (0.5 + dot(toLamp, toLamp)) * open;
    float pixel = here.pixel;

    // The plinth, with the platter's shadow on it; then platter, record and label over one another,
    // each worked out only where it shows.
    if (here.radius > rim - pixel) {
        float3 timber = wood(here.at + float2(0.0, 0.3));
        float2 fromLamp = here.at - float2(0.11, -0.08);
        float shadow = smoothstep(rim + 0.02, rim + 0.36, length(fromLamp));
        colour = timber * (lights[0].colour * pool * 1.9 * mix(0.25, 1.0, shadow) + float3(0.020, 0.030, 0.052));
        float3 glance = normalize(normalize(lights[1].place - place) + view);
        colour += float3(0.05, 0.08, 0.14) * pow(saturate(glance.y), 60.0) * 0.8 * noise(here.at * float2(4.0, 60.0));

        float ring = smoothstep(rim + 0.085 + pixel, rim + 0.085 - pixel, here.radius);
        float dots = smoothstep(0.30, 0.36, abs(fract((here.angle + turned) * 180.0 / 6.2831853) - 0.5));
        float metal = 0.35 + 0.65 * pow(0.5 + 0.5 * sin(here.angle * 2.0 + 1.1), 3.0);
        float3 steel = float3(0.42, 0.40, 0.38) * metal * (0.35 + 0.65 * dots) * (lights[0].colour * pool * 2.2 + float3(0.03, 0.05, 0.09));
        colour = mix(colour, steel, ring);
    }
    if (here.radius < rim + pixel && here.radius > label - pixel) {
        // The record itself: tracks with quiet gaps between them, each cut a little differently.
        float lane = (run - here.radius) / (run - deadWax) * 5.0;
        float gap = smoothstep(0.018 + pixel * 5.0, 0.010, abs(fract(lane + 0.5) - 0.5) / 1.2 - pixel);
        float cutting = smoothstep(run + pixel, run - pixel, here.radius) * smoothstep(deadWax - pixel, deadWax + pixel, here.radius);
        float spun = here.angle - turned;
        float fine = smoothstep(0.010, 0.002, pixel);
        float loud = 0.75 + 0.5 * fine * (noise(float2(here.radius * 260.0, 2.0)) - 0.5) + 0.25 * noise(float2(here.radius * 38.0, 7.0)) +
                     0.12 * (noise(float2(cos(spun), sin(spun)) * here.radius * 14.0) - 0.5);
        float cut = cutting * loud * (1.0 - 0.8 * gap);
        float sway = p.warp * 0.020;
        float3 up = normalize(float3(sway * sin(spun * 2.0 + 0.6 + turned), 1.0, sway * cos(spun + turned * 1.0 + turned)));
        float3 vinyl = float3(0.0055, 0.0052, 0.006) + grooves(here, view, place, up, t, cut + 0.05, p) * (0.35 + 0.65 * open) * 0.34;

        // What is heard. Silence has a slow breath of its own, so that the record is never dead.
        float x = saturate((here.radius - deadWax) / (run - deadWax));
        float heard = in.band(x) * (0.6 + in.audio.w);
        float behind = fract((here.angle - atan2(stylus.y, stylus.x)) * (p.turn < 0.0 ? -1.0 : 1.0) / -6.2831853);
        float trace = smoothstep(0.0, 0.05, behind) * exp(-behind * 5.0) * exp(-abs(here.radius - played) * 30.0);
        float hot = exp(-behind * 4.0) * exp(-abs(here.radius - played) * 190.0);
        float wake = heard * heard * exp(-behind * 3.2) * smoothstep(0.0, 0.02, behind) * (0.55 + 0.9 * (loud - 0.6)) * cutting;
        float3 ember = mix(float3(1.0, 0.20, 0.04), float3(1.0, 0.72, 0.32), saturate(x * 0.7 + heard * 0.5));
        vinyl += ember * p.glow * (trace * 0.30 + hot * 0.8 + wake * 0.42) * (0.7 + 0.3 * loud) * cutting;
        float dust = step(0.9965, hash(floor(rotate(here.at, -turned) * 150.0))) * smoothstep(0.012, 0.004, pixel);
        vinyl += dust * lights[0].colour * pool * 0.10;
        float bead = smoothstep(0.016 + pixel, 0.0, abs(here.radius - rim + 0.014));
        vinyl += bead * (lights[0].colour * pool * 0.20 + float3(0.02, 0.03, 0.06));
        colour = mix(colour, vinyl, smoothstep(rim + pixel, rim - pixel, here.radius));
    }
    if (here.radius < label + pixel) {
        float2 paper = rotate(here.at, -turned);
        float3 face = printed(paper, pixel);
        float3 given = in.channel(0, 0.5 + 0.5 * paper / label).rgb;
        face = mix(face, given, step(0.004, given.r + given.g + given.b));
        float3 disc = face * (lights[0].colour * pool * 2.3 + float3(0.03, 0.04, 0.06)) * (0.9 + 0.1 * noise(paper * 90.0));
        disc += face * p.glow * 0.35 * in.audio.x;
        disc *= 1.0 - 0.6 * smoothstep(0.02, 0.0, abs(here.radius - label + 0.004));
        colour = mix(colour, disc, smoothstep(label + pixel, label - pixel, here.radius));
    }

    // The spindle, a small bright dome, and the arm over everything.
    float3 knob = float3(0.0, 0.05, 0.0);
    float dome = rod(eye, ray, knob - float3(0.0, 0.05, 0.0), knob, 0.036, 0.0015, s, d);
    colour = mix(colour, float3(0.50, 0.44, 0.38) * (0.15 + pool * 2.0 * smoothstep(0.2, 1.0, s)), dome);
    float soft = 1.1 / side;
    colour = mix(colour, float3(0.020) + lights[0].colour * p.lamp * 0.05,
                 rod(eye, ray, pivot - float3(0.0, 0.24, 0.0), pivot - float3(0.0, 0.05, 0.0), 0.12, soft, s, d));
    float shell = rod(eye, ray, tip + float3(0.0, 0.03, 0.0), head, 0.052, soft, s, d);
    colour = mix(colour, float3(0.016) + lights[0].colour * 0.05 * p.lamp, shell);
    float3 axis = normalize(pivot - head), end = pivot + axis * 0.22;
    float weight = rod(eye, ray, end, end + axis * 0.16, 0.10, soft, s, d);
    float arm = max(weight, rod(eye, ray, head, end, 0.027, soft, s, d));
    if (arm > 0.0) {
        float3 on = eye + ray * d;
        float3 n = on - pivot;
        n = normalize(normalize(n - axis * dot(n, axis) + 1e-5) - ray * 0.35);
        float3 l = normalize(lights[0].place - on), k = normalize(lights[1].place - on);
        float3 chrome = float3(0.030, 0.028, 0.030) + lights[0].colour * p.lamp * (0.22 * saturate(dot(n, l)) + 1.3 * pow(saturate(dot(n, normalize(l + view))), 40.0)) +
                        lights[1].colour * (0.10 * saturate(dot(n, k)) + 0.9 * pow(saturate(dot(n, normalize(k + view))), 30.0));
        colour = mix(colour, chrome, arm);
    }
    // Bright things of the last frame bloom a little; then highlights roll off and corners darken.
    float3 bloom = float3(0.0);
    for (int i = 0; i < 6; i++) {
        float a = float(i) * 1.0471976;
        bloom += max(in.previous(uv + float2(cos(a), sin(a)) * 0.012 * side / u.resolution).rgb - 0.55, 0.0);
    }
    colour += bloom * 0.06;
    colour = 1.0 - exp(-2.4 * colour);
    colour = pow(colour, float3(0.62));
    colour *= 1.0 - 0.75 * dot(uv - 0.5, uv - 0.5);
    colour += (hash(uv * u.resolution + fract(t)) - 0.5) / 255.0;
    return float4(colour, 1.0);
}

// The tune. Times are the record's own seconds, those of 33.3 turns a minute; notes are counted in
// semitones, 69 being 440 Hz.
constant float beat = 0.9, bar = 3.6, tune = 28.8;
constant float4 chords[8] = {float4(53, 57, 60, 64), float4(52, 55, 59, 62), float4(53, 57, 60, 64), float4(52, 55, 59, 64),
                             float4(53, 57, 60, 64), float4(55, 59, 62, 64), float4(55, 57, 60, 64), float4(52, 57, 60, 67)};
constant float basses[8] = {41, 40, 38, 36, 41, 43, 45, 33};
// Two notes to a beat, 0 where the last one rings on.
constant float melody[64] = {0, 0, 72, 0, 76, 0, 79, 76,  74, 0, 0, 0, 71, 0, 67, 0,  0, 0, 69, 72, 0, 76, 0, 77,  76, 0, 0, 74, 0, 0, 0, 0,
                             0, 0, 72, 0, 76, 0, 81, 79,  0, 76, 74, 0, 71, 0, 74, 0,  72, 0, 0, 0, 69, 0, 67, 0,  69, 0, 0, 0, 0, 0, 0, 0};

float hertz(float note) { return 440.0 * exp2((note - 69.0) / 12.0); }

float wave(float cycles) { return sin(6.2831853 * fract(cycles)); }

// White: a number from -1 to 1 for each whole one.
float white(uint n) {
    n = n * 0x9E3779B1u + 0x3C6EF35Fu;
    n = (n ^ (n >> 15)) * 0x85EBCA77u;
    n ^= n >> 13;
    return float(n >> 8) / 8388608.0 - 1.0;
}

// Noise without what lies far above half of `rate`, in Hz.
float breath(float s, float rate, uint seed) {
    float at = s * rate;
    float f = at - floor(at);
    uint n = uint(at) + seed * 4000000u;
    return mix(white(n), white(n + 1u), f * f * (3.0 - 2.0 * f));
}

// A struck reed, bright for a moment; `wow` seconds early or late.
float reed(float note, float age, float wow, float length_) {
    if (age < 0.0 || age >= length_) return 0.0;
    float f = hertz(note);
    float cycles = f * (age + wow);
    float fade = exp(-1.6 * age) * smoothstep(0.0, 0.012, age) * smoothstep(length_, length_ * 0.75, age);
    return fade * sin(6.2831853 * fract(cycles) + (0.25 + 0.9 * exp(-5.0 * age)) * wave(cycles));
}

float2 music(float s, float wow) {
    float inBar = fmod(s, bar);
    int number = min(int(s / bar), 7);
    float2 out = float2(0.0);
    for (int i = 0; i < 4; i++) { // a chord, rolled a little
        float v = reed(chords[number][i], inBar - 0.035 * float(i), wow, bar - 0.12);
        float side = 0.32 + 0.12 * float(i);
        out += 0.12 * v * float2(1.0 - side, side);
    }
    float deep = fmod(inBar, 2.0 * beat); // on the first beat and the third
    float low = hertz(basses[number]) * (deep + wow);
    out += 0.17 * exp(-1.1 * deep) * smoothstep(0.0, 0.02, deep) * smoothstep(1.8, 1.6, deep) * (wave(low) + 0.25 * wave(2.0 * low));
    int step_ = int(s / (0.5 * beat));
    for (int back = 0; back < 4; back++) { // notes ring into the next ones
        int k = step_ - back;
        if (k < 0 || melody[k] < 1.0) continue;
        float age = s - float(k) * 0.5 * beat;
        out += 0.14 * reed(melody[k], age, wow, 2.0 * beat) * float2(0.42, 0.58);
    }
    return out;
}

// A soft drum on the first beat and the third, brushes on the others.
float2 drums(float s) {
    float age = fmod(s, 2.0 * beat);
    float drum = 0.26 * exp(-7.0 * age) * smoothstep(0.0, 0.004, age) * wave(46.0 * age + 1.6 * (1.0 - exp(-22.0 * age)));
    float after = fmod(s + beat, 2.0 * beat);
    float brush = 0.055 * exp(-9.0 * after) * smoothstep(0.0, 0.03, after);
    float tick = fmod(s, 0.5 * beat);
    brush += 0.016 * exp(-30.0 * tick) * smoothstep(0.0, 0.008, tick);
    return drum + brush * float2(breath(s, 15000.0, 1u), breath(s, 15000.0, 2u));
}

// Dust in the groove, a scratch that comes once a turn, and the air of the room that it was cut in.
float2 crackle(float record, float s) {
    float cells = record * 38.0;
    uint cell = uint(cells);
    float chance = white(cell * 3u);
    float age = (cells - floor(cells) - 0.4 * (1.0 + white(cell * 3u + 1u))) / 38.0;
    float size = pow(abs(white(cell * 3u + 2u)), 4.0) * step(0.2, chance);
    float pop = age < 0.0 ? 0.0 : size * exp(-2600.0 * age) * wave(1900.0 * age);
    float scratch = fmod(record + 0.7, 1.8018018);
    pop += 0.5 * exp(-1400.0 * scratch) * wave(900.0 * scratch);
    float side = 0.5 + 0.35 * chance;
    float2 air = float2(breath(s, 9000.0, 3u), breath(s, 9000.0, 4u));
    return 0.16 * pop * float2(1.0 - side, side) + 0.006 * air;
}

float2 sound(float t, constant Params& p) {
    float speed = abs(p.turn) / 33.3;
    float record = t * speed;
    float s = fmod(record, tune);
    float wow = p.warp * 0.0007 * sin(6.2831853 * record / 1.8018018);
    return 2.2 * p.volume * smoothstep(0.0, 0.05, speed) * (music(s, wow) + drums(s) + crackle(record, s));
}
