@msl.buffer.0 = external global float

define void @main() {
  %before = call float @msl.atomic_fetch_add.f32(ptr @msl.buffer.0, float 1.000000e+00)
  ret void
}

declare float @msl.atomic_fetch_add.f32(ptr, float)
