// Pointers in buffers: a list that one kernel links and another walks and changes, a tree, null,
// pointers to pointers, and values of all sizes behind pointers.
// @runs build 8 8
// @runs check
// @expects 36 8 | 204 | 2 7 | 5 0 0 | 1 0 1 | 40 9 | 2.5 7 1.5 200 0.25 | 12
// @refused An address in memory needs 64-bit integers, which the device lacks.
#include <metal_stdlib>
using namespace metal;

struct Node {
    device Node* next;
    float value;
    device Node* children[2];
};
struct Mixed {
    device half* halves;
    device uchar* bytes;
    device packed_float3* points;
    device atomic_uint* counter;
    constant float* inputs;
};

kernel void build(device Node* nodes [[buffer(2)]], uint i [[thread_position_in_grid]]) {
    nodes[i].value = float(i + 1);
    nodes[i].next = i < 7 ? nodes + i + 1 : nullptr;
    nodes[i].children[0] = 2 * i + 1 < 8 ? &nodes[2 * i + 1] : nullptr;
    nodes[i].children[1] = 2 * i + 2 < 8 ? &nodes[2 * i + 2] : nullptr;
}

static float sumOf(device const Node* node) {
    float sum = 0.0;
    for (; node; node = node->next) sum += node->value;
    return sum;
}

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]],
                  device Node* nodes [[buffer(2)]]) {
    out[0] = sumOf(nodes);
    int count = 0;
    for (device Node* node = nodes; node != nullptr; node = node->next) count++;
    out[1] = float(count);

    float squares = 0.0;
    for (device Node* node = nodes; node; node = node->next) {
        node->value *= node->value;
        squares += node->value;
    }
    out[2] = squares;

    // By value: the larger child in the heap of 8 nodes, down to a leaf.
    device Node* node = nodes;
    uint at = 0, path = 0;
    while (node->children[1]) {
        at = uint(in[1]);
        node = node->children[at];
        path++;
    }
    out[3] = float(path);
    out[4] = sqrt(node->value);

    device Node* none = nodes[7].next;
    out[5] = none == nullptr ? 5.0 : 0.0;
    out[6] = none->value; // null: reads zero, stores nothing
    none->value = 3.0;
    out[7] = nodes[7].next->value;
    out[8] = nodes[2].next == &nodes[3] ? 1.0 : 0.0;
    out[9] = nodes[2].next == nodes ? 1.0 : 0.0;
    out[10] = float(nodes[5].next - nodes[4].next);

    // Removes the second node through a pointer to the pointer.
    device Node* device* link = &nodes->next;
    *link = (*link)->next;
    out[11] = sumOf(nodes) - 160.0;
    device Node* chosen = in[1] > 0.5 ? nodes->next : nodes + 5;
    out[12] = chosen->value;

    device Mixed* mixed = (device Mixed*)(nodes + 8);
    device char* free = (device char*)(mixed + 1);
    *mixed = {(device half*)free, (device uchar*)(free + 16), (device packed_float3*)(free + 32),
              (device atomic_uint*)(free + 80), in};
    mixed->halves[int(in[1])] = 2.5h;
    mixed->bytes[3] = 200;
    mixed->points[2] = packed_float3(1.5, 0.25, 7.0);
    atomic_fetch_add_explicit(mixed->counter, 5u, memory_order_relaxed);
    atomic_fetch_add_explicit(mixed->counter, 7u, memory_order_relaxed);
    float3 point = mixed->points[int(mixed->inputs[2])];
    out[13] = float(mixed->halves[1]);
    out[14] = point.z;
    out[15] = point.x;
    out[16] = float(mixed->bytes[int(in[3])]);
    out[17] = point.y;
    out[18] = float(atomic_load_explicit(mixed->counter, memory_order_relaxed));
}
