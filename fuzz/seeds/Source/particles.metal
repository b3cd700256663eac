// @particles 1000
struct Particle { float2 at; };
