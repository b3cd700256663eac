// Control flow: every statement, nested, with early ends.
#include <metal_stdlib>
using namespace metal;

int classify(float x) {
    if (x < 0) return -1;
    else if (x == 0) return 0;
    return 1;
}
float walk(thread float& position, const thread int* steps, int count) {
    float left = 100;
    for (int i = 0; i < count && left > 0; ++i) {
        if (steps[i] == 0) continue;
        position += float(steps[i]);
        left -= abs(position);
        if (left < 10) break;
    }
    return left;
}
float search(float target) {
    float low = 0, high = 1;
    while (true) {
        float middle = (low + high) * 0.5;
        if (high - low < 1e-4) return middle;
        if (middle * middle < target) low = middle; else high = middle;
    }
}
void swap(thread float& a, thread float& b) { float t = a; a = b; b = t; }

fragment float4 f(float4 p [[position]], constant int* data [[buffer(0)]]) {
    int steps[5] = {1, 0, -2, 3, data[0]};
    float position = p.x;
    float left = walk(position, steps, 5);
    int n = 0;
    do {
        ++n;
        switch (n % 4) {
        case 0: left += 1; continue;
        case 1:
        case 2: left -= 1; break;
        default:
            for (int j = 0; j < n; ++j) {
                if (j == 3) break;
                left += steps[j % 5];
            }
        }
        if (left > 1000) return float4(1);
    } while (n < 20);
    float a = left, b = search(p.y);
    if (a > b) swap(a, b);
    float grid[3][4];
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 4; x += 1)
            grid[y][x] = x * y + (x > y ? a : b);
    int k = classify(grid[data[1] % 3][n % 4]);
    for (;;) {
        if (--k < 0) break;
        b *= 2;
    }
    n = (k = 3, k + 1);
    b += n > 2 ? (a > 1 ? 1 : 2) : 3;
    b -= bool(n & 1) && a < 3 || !(b > 2);
    if (b < -1e6) discard_fragment();
    return float4(a, b, position, search(abs(a)));
}
