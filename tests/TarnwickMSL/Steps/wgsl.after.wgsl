@id(1) override threadsX: u32 = 1u;
@id(2) override threadsY: u32 = 1u;
@id(3) override threadsZ: u32 = 1u;

@group(0) @binding(0) var<storage, read_write> buffer0: array<u32>;

@compute @workgroup_size(threadsX, threadsY, threadsZ)
fn main() {
    buffer0[0u] = buffer0[0u] * 3u;
}
