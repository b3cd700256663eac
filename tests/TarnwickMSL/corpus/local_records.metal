// Records and enumerations declared where they are used: in functions and in records (1.5).
// @expects 6 | 1 | 5 | 2 | 9
#include <metal_stdlib>
using namespace metal;

struct Tree {
    enum Kind { leaf, branch };
    struct Node {
        Kind kind;
        float weight;
    };
    Node nodes[3];
    float weight() const {
        float sum = 0;
        for (int i = 0; i < 3; i++) sum += nodes[i].kind == leaf ? nodes[i].weight : 1;
        return sum;
    }
};

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    Tree tree = {{{Tree::leaf, in[2]}, {Tree::branch, in[9]}, {Tree::leaf, in[3]}}};
    out[0] = tree.weight();
    enum class Local : ushort { one = 1, two };
    out[1] = ushort(Local::one);
    struct Pair {
        float a, b;
        float sum() const { return a + b; }
    };
    Pair pair = {in[2], in[3]};
    out[2] = pair.sum();
    Tree::Node node = tree.nodes[1];
    using K = Tree::Kind;
    out[3] = node.kind == K::branch ? 2 : 0;
    out[4] = node.weight;
}
