// Fences of textures where threads have parted: each orders the accesses of its own thread.
// @texture 0 2d uint 64x1
// @runs check 64 64
// @expects 2 0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], texture2d<uint, access::read_write> board [[texture(0)]],
                  uint i [[thread_position_in_grid]]) {
    board.write(uint4(0), uint2(i, 0));
    for (uint k = 0; k < i % 23; k++) {
        board.write(board.read(uint2(i, 0)) + 1, uint2(i, 0));
        board.fence();
    }
    if (i % 3 == 0)
        board.fence();
    const uint rounds = board.read(uint2(i, 0)).x;
    if (i < 23)
        out[i + 1] = float(rounds);
    if (i == 48)
        out[0] = float(rounds);
}
