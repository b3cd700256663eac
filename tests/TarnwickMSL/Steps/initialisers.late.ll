; entry name=shade symbol=shade stage=fragment
@count = internal global i32 0, section "function_constant"
@more = internal global i32 0
@root = internal global float 0.000000e+00
@llvm.global_ctors = appending global [2 x { i32, ptr, ptr }] [{ i32, ptr, ptr } { i32 65535, ptr @msl.function_constants, ptr null }, { i32, ptr, ptr } { i32 65535, ptr @start, ptr null }]

define internal void @msl.function_constants() {
  %value = call i32 @msl.function_constant.i32(i32 256)
  store i32 %value, ptr @count
  ret void
}

define internal void @start() {
  call void @start.1()
  call void @start.2()
  ret void
}

define internal void @start.1() {
  %root = call float @llvm.sqrt.f32(float 9.000000e+00)
  store float %root, ptr @root
  ret void
}

define internal void @start.2() {
  %count = load i32, ptr @count
  %more = add i32 %count, 1
  store i32 %more, ptr @more
  ret void
}

define i32 @shade() {
  %more = load i32, ptr @more
  %root = load float, ptr @root
  %number = fptoui float %root to i32
  %sum = add i32 %more, %number
  ret i32 %sum
}

declare i32 @msl.function_constant.i32(i32)

declare float @llvm.sqrt.f32(float)
