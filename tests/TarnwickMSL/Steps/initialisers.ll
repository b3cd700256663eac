@root = internal global float 0.000000e+00
@llvm.global_ctors = appending global [1 x { i32, ptr, ptr }] [{ i32, ptr, ptr } { i32 65535, ptr @start, ptr null }]

define internal void @start() {
  %root = call float @llvm.sqrt.f32(float 9.000000e+00)
  store float %root, ptr @root
  ret void
}

define float @f() {
  %root = load float, ptr @root
  ret float %root
}

declare float @llvm.sqrt.f32(float)
