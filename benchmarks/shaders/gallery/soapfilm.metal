// The colours of a thin film: interference at seven wavelengths, through a matrix to a display.
// @param thickness 420 100 1200
// @param swirl 1.0 0 3

constant float3x3 toDisplay = float3x3(float3(3.2406, -0.9689, 0.0557), float3(-1.5372, 1.8758, -0.2040),
                                       float3(-0.4986, 0.0415, 1.0570));

float bump(float x, float middle, float below, float above) {
    float d = (x - middle) / (x < middle ? below : above);
    return exp(-0.5 * d * d);
}

float3 observer(float nm) {
    float x = 1.056 * bump(nm, 599.8, 37.9, 31.0) + 0.362 * bump(nm, 442.0, 16.0, 26.7) - 0.065 * bump(nm, 501.1, 20.4, 26.2);
    float y = 0.821 * bump(nm, 568.8, 46.9, 40.5) + 0.286 * bump(nm, 530.9, 16.3, 31.1);
    float z = 1.217 * bump(nm, 437.0, 11.8, 36.0) + 0.681 * bump(nm, 459.0, 26.0, 13.8);
    return float3(x, y, z);
}

float3 film(float thickness, float cosine) {
    float inner = sqrt(1.0 - (1.0 - cosine * cosine) / (1.33 * 1.33));
    float path = 2.0 * 1.33 * thickness * inner;
    float3 sum = float3(0.0);
    for (int i = 0; i < 7; i++) {
        float nm = 410.0 + 40.0 * float(i);
        float wave = sin(3.1415927 * path / nm);
        sum += observer(nm) * wave * wave;
    }
    return max(toDisplay * (sum * 0.36), 0.0);
}

float hash(float2 q) {
    q = fract(q * float2(0.3983, 0.4427));
    q += dot(q.yx, q.xy + float2(2.5351, 4.3137));
    return fract(q.x * q.y * 5.4337);
}

float noise(float2 q) {
    float2 c = floor(q), f = fract(q);
    f = f * f * (3.0 - 2.0 * f);
    return mix(mix(hash(c), hash(c + float2(1, 0)), f.x), mix(hash(c + float2(0, 1)), hash(c + float2(1, 1)), f.x), f.y);
}

float flow(float2 q, float time) {
    float sum = 0.0, size = 0.5;
    for (int i = 0; i < 4; i++) {
        q += size * float2(sin(q.y * 2.0 + time), cos(q.x * 2.0 - time * 0.7));
        sum += size * noise(q * 2.0);
        q = float2(q.x * 0.8 - q.y * 0.6, q.x * 0.6 + q.y * 0.8) * 1.9;
        size *= 0.5;
    }
    return sum;
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = (uv - 0.5) * float2(u.resolution.x / u.resolution.y, 1.0) * 2.0;
    float3 colour = mix(float3(0.04, 0.05, 0.08), float3(0.12, 0.12, 0.16), uv.y);
    float2 bubbles[3] = {float2(-0.55, 0.05), float2(0.6, 0.2), float2(0.15, -0.5)};
    for (int i = 0; i < 3; i++) {
        float radius = 0.68 - 0.16 * float(i);
        float2 middle = bubbles[i] + 0.05 * float2(sin(u.time + float(i)), cos(u.time * 0.8 + float(i) * 2.0));
        float2 d = (q - middle) / radius;
        float r2 = dot(d, d);
        if (r2 >= 1.0)
            continue;
        float cosine = sqrt(1.0 - r2);
        float3 normal = float3(d, cosine);
        float swirl = flow(d * (1.0 + 0.4 * r2) + float(i) * 5.0, u.time * 0.4 * p.swirl);
        float thick = p.thickness * (0.55 + 0.5 * swirl - 0.35 * d.y);
        float3 paint = film(max(thick, 0.0), cosine);
        float rim = 0.12 + 0.88 * pow(1.0 - cosine, 2.5);
        float window = smoothstep(0.04, 0.0, max(abs(d.x + 0.4 + 0.2 * d.y) - 0.13, abs(d.y - 0.45 - 0.1 * d.x) - 0.16));
        float glint = pow(max(dot(normal, normalize(float3(0.5, -0.6, 0.7))), 0.0), 90.0);
        colour = colour * (1.0 - 0.25 * rim) + paint * rim * 0.9 + window * 0.35 + glint * 0.5;
    }
    return float4(pow(clamp(colour, 0.0, 1.0), float3(0.4545)), 1.0);
}
