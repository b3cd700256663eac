struct Particle {
    vec2 position; // uv
    vec2 velocity; // uv a second
    float heat;
    float size; // of the picture's height
    float age;  // seconds
    uint seed;
};
layout(set = 0, binding = 0, std430) PARTICLE_ACCESS buffer Particles { Particle particles[]; };
#define drift frame.params.x
#define pull frame.params.y
#define stay frame.params.z
#define shine frame.params.w

#ifdef SPAWN
uint scrambled(uint x) {
    x = (x ^ (x >> 16)) * 0x7feb352du;
    x = (x ^ (x >> 15)) * 0x846ca68bu;
    return x ^ (x >> 16);
}
float unit(uint x) { return float(x >> 8) / 16777216.0; }
void main() {
    uint id = gl_GlobalInvocationID.x;
    if (id >= frame.count) return;
    uint a = scrambled(id), b = scrambled(a + 1u), c = scrambled(b + 1u);
    particles[id] = Particle(vec2(unit(a), unit(b)), vec2(0), 0.0, (1.0 + 2.0 * unit(c)) / 720.0, 0.0, c);
}
#endif

#ifdef UPDATE
void main() {
    uint id = gl_GlobalInvocationID.x;
    if (id >= frame.count) return;
    vec2 position = particles[id].position, velocity = particles[id].velocity;
    vec2 whirl = vec2(sin(position.y * 9.0 + frame.time), cos(position.x * 9.0 - frame.time * 0.7));
    vec2 force = drift * whirl - pull * (position - 0.5);
    velocity = (velocity + force * frame.timeDelta) * 0.995;
    particles[id].velocity = velocity;
    particles[id].position = fract(position + velocity * frame.timeDelta);
    particles[id].heat = mix(particles[id].heat, min(length(velocity) * 4.0, 1.0), 0.1);
    particles[id].age += frame.timeDelta;
}
#endif

#ifdef DOT_VERTEX
layout(location = 0) flat out vec3 ink;
void main() {
    Particle q = particles[gl_VertexIndex];
    gl_Position = vec4(q.position.x * 2.0 - 1.0, 1.0 - q.position.y * 2.0, 0.0, 1.0);
    gl_PointSize = clamp(q.size * frame.resolution.y, 0.0, 511.0);
    ink = mix(vec3(0.08, 0.02, 0.005), vec3(0.06, 0.05, 0.03), q.heat);
}
#endif

#ifdef DOT_FRAGMENT
layout(location = 0) flat in vec3 ink;
layout(location = 0) out vec4 colour;
void main() { colour = vec4(ink, 0.05); }
#endif

#ifdef FADE
layout(location = 0) in vec2 at;
layout(location = 0) out vec4 colour;
void main() { colour = texture(picture, 0.5 + (at - 0.5) * 0.998) * stay; }
#endif

#ifdef FINAL
layout(location = 0) in vec2 at;
layout(location = 0) out vec4 colour;
void main() { colour = vec4(1.0 - exp(-texture(picture, at).rgb * shine), 1.0); }
#endif
