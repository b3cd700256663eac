; shader
@in = external constant float
@out = external global float

define void @main() {
  %a = load float, ptr @in, align 4
  %x = fmul float %a, %a
  %floor = call float @llvm.floor.f32(float %x)
  %fraction = fsub float %x, %floor
  store float %fraction, ptr @out, align 4
  ret void
}

; Function Attrs: nocallback nofree nosync nounwind speculatable willreturn memory(none)
declare float @llvm.floor.f32(float) #0

; Function Attrs: nocallback nofree nosync nounwind speculatable willreturn memory(none)
declare i32 @llvm.smin.i32(i32, i32) #0

attributes #0 = { nocallback nofree nosync nounwind speculatable willreturn memory(none) }
