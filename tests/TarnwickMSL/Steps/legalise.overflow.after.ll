; shader
@in = external constant <2 x i32>
@out = external global i1

define void @main() {
  %both = load <2 x i32>, ptr @in, align 8
  %a = extractelement <2 x i32> %both, i32 0
  %b = extractelement <2 x i32> %both, i32 1
  %1 = add i32 %a, %b
  %2 = icmp ult i32 %1, %a
  store i1 %2, ptr @out, align 1
  ret void
}

; Function Attrs: nocallback nofree nosync nounwind speculatable willreturn memory(none)
declare { i32, i1 } @llvm.uadd.with.overflow.i32(i32, i32) #0

attributes #0 = { nocallback nofree nosync nounwind speculatable willreturn memory(none) }
