; A choice of bits that is selected against one of its operands, or an arm of one, is a difference;
; others stay.
@in = external constant <4 x i32>
@out = external global i32

define void @main() {
  %all = load <4 x i32>, ptr @in
  %a = extractelement <4 x i32> %all, i64 0
  %b = extractelement <4 x i32> %all, i64 1
  %low = and i32 %a, 65535
  %high = and i32 %b, -65536
  %both = or i32 %low, %high
  store i32 %both, ptr @out
  %which = extractelement <4 x i32> %all, i64 2
  %isOne = icmp eq i32 %which, 1
  %x = bitcast i32 %which to float
  %y = uitofp i32 %b to float
  %signed = call float @llvm.copysign.f32(float %y, float %x)
  %chosen = select i1 %isOne, float %signed, float %x
  store float %chosen, ptr @out
  %again = call float @llvm.copysign.f32(float %chosen, float %y)
  %third = select i1 %isOne, float %again, float %x
  store float %third, ptr @out
  %size = call float @llvm.fabs.f32(float %y)
  %plain = call float @llvm.copysign.f32(float %y, float %third)
  %fourth = select i1 %isOne, float %plain, float %size
  store float %fourth, ptr @out
  ret void
}

declare float @llvm.copysign.f32(float, float)
declare float @llvm.fabs.f32(float)
