struct Particle {
    vec3 position; // of a room 2 wide and high, the eye 3 before its middle
    vec3 velocity; // a second
    vec4 colour;
    float age;  // seconds
    float life; // seconds
    float size; // of the picture's height at the middle of the room
    float spin; // radians a second, around the fountain
};
layout(set = 0, binding = 0, std430) PARTICLE_ACCESS buffer Particles { Particle particles[]; };
#define gravity frame.params.x
#define spread frame.params.y
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
    uint a = scrambled(id), b = scrambled(a + 1u), c = scrambled(b + 1u), d = scrambled(c + 1u);
    float angle = unit(a) * 6.2831853, outwards = sqrt(unit(b));
    particles[id] = Particle(
        vec3(2.4 * (unit(d) - 0.5), 1.6 * (unit(c) - 0.5), 1.6 * (unit(b) - 0.5)),
        vec3(cos(angle) * outwards * spread, 1.0 + unit(c), sin(angle) * outwards * spread),
        vec4(0.05, 0.02 + 0.03 * unit(d), 0.04 * unit(c), 0.05), unit(d) * 2.0, 2.0 + unit(a),
        (7.0 + 2.0 * unit(b)) / 720.0, unit(c) - 0.5);
}
#endif

#ifdef UPDATE
void main() {
    uint id = gl_GlobalInvocationID.x;
    if (id >= frame.count) return;
    vec3 position = particles[id].position, velocity = particles[id].velocity;
    float turn = particles[id].spin * frame.timeDelta, life = particles[id].life;
    float c = cos(turn), s = sin(turn);
    velocity = vec3(c * velocity.x - s * velocity.z, velocity.y - gravity * frame.timeDelta,
                    s * velocity.x + c * velocity.z);
    position += velocity * frame.timeDelta;
    if (position.y < -1.0) {
        position.y = -2.0 - position.y;
        velocity.y = -0.8 * velocity.y;
    }
    float age = particles[id].age + frame.timeDelta;
    age = age > life ? 0.0 : age;
    particles[id].position = position;
    particles[id].velocity = velocity;
    particles[id].age = age;
    particles[id].colour.w = 0.05 * (1.0 - age / life);
}
#endif

#ifdef DOT_VERTEX
layout(location = 0) flat out vec4 ink;
void main() {
    Particle q = particles[gl_VertexIndex];
    float near = 3.0 / (3.0 + q.position.z);
    vec2 at = q.position.xy * near;
    at.x *= frame.resolution.y / frame.resolution.x;
    gl_Position = vec4(at.x, -at.y, 0.0, 1.0);
    gl_PointSize = clamp(q.size * near * frame.resolution.y, 0.0, 511.0);
    ink = q.colour * (0.2 + 10.0 * q.colour.w);
}
#endif

#ifdef DOT_FRAGMENT
layout(location = 0) flat in vec4 ink;
layout(location = 0) out vec4 colour;
void main() {
    vec2 at = gl_PointCoord * 2.0 - 1.0;
    float glow = clamp(1.0 - dot(at, at), 0.0, 1.0);
    colour = ink * (glow * glow);
}
#endif

#ifdef FADE
layout(location = 0) in vec2 at;
layout(location = 0) out vec4 colour;
void main() { colour = texture(picture, at) * stay; }
#endif

#ifdef FINAL
layout(location = 0) in vec2 at;
layout(location = 0) out vec4 colour;
void main() { colour = vec4(1.0 - exp(-texture(picture, at).rgb * shine), 1.0); }
#endif
