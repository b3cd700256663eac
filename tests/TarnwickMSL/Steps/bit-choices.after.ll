; shader
@in = external constant <4 x i32>
@out = external global i32

define void @main() {
  %all = load <4 x i32>, ptr @in, align 16
  %a = extractelement <4 x i32> %all, i64 0
  %b = extractelement <4 x i32> %all, i64 1
  %low = and i32 %a, 65535
  %high = and i32 %b, -65536
  %both = or i32 %low, %high
  store i32 %both, ptr @out, align 4
  %which = extractelement <4 x i32> %all, i64 2
  %isOne = icmp eq i32 %which, 1
  %x = bitcast i32 %which to float
  %y = uitofp i32 %b to float
  %1 = bitcast float %y to i32
  %2 = bitcast float %x to i32
  %3 = xor i32 %2, -1
  %4 = and i32 %3, -2147483648
  %5 = or i32 %1, -2147483648
  %6 = sub i32 %5, %4
  %7 = bitcast i32 %6 to float
  %chosen = select i1 %isOne, float %7, float %x
  store float %chosen, ptr @out, align 4
  %8 = bitcast float %chosen to i32
  %9 = bitcast float %y to i32
  %10 = xor i32 %9, -1
  %11 = and i32 %10, -2147483648
  %12 = or i32 %8, -2147483648
  %13 = sub i32 %12, %11
  %14 = bitcast i32 %13 to float
  %third = select i1 %isOne, float %14, float %x
  store float %third, ptr @out, align 4
  %size = call float @llvm.fabs.f32(float %y)
  %15 = bitcast float %y to i32
  %16 = bitcast float %third to i32
  %17 = xor i32 %16, -1
  %18 = and i32 %17, -2147483648
  %19 = or i32 %15, -2147483648
  %20 = sub i32 %19, %18
  %21 = bitcast i32 %20 to float
  %fourth = select i1 %isOne, float %21, float %size
  store float %fourth, ptr @out, align 4
  ret void
}

; Function Attrs: nocallback nofree nosync nounwind speculatable willreturn memory(none)
declare float @llvm.copysign.f32(float, float) #0

; Function Attrs: nocallback nofree nosync nounwind speculatable willreturn memory(none)
declare float @llvm.fabs.f32(float) #0

attributes #0 = { nocallback nofree nosync nounwind speculatable willreturn memory(none) }
