#include <metal_stdlib>
using namespace metal;
void f() {
    (
#pragma unroll
    for (;;);
}
