; The fraction of a square is below one: only just below zero can x - floor(x) round up to it.
@in = external constant float
@out = external global float

define void @main() {
  %a = load float, ptr @in
  %x = fmul float %a, %a
  %floor = call float @llvm.floor.f32(float %x)
  %fraction = fsub float %x, %floor
  %bits = bitcast float %fraction to i32
  %below = call i32 @llvm.smin.i32(i32 %bits, i32 1065353215)
  %result = bitcast i32 %below to float
  store float %result, ptr @out
  ret void
}

declare float @llvm.floor.f32(float)
declare i32 @llvm.smin.i32(i32, i32)
