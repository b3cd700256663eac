; shader
@in = external constant <2 x i32>
@out = external global i32

define void @main() {
  %both = load <2 x i32>, ptr @in, align 8
  %1 = extractelement <2 x i32> %both, i64 0
  %2 = extractelement <2 x i32> %both, i64 1
  %3 = add i32 %1, %2
  %4 = and i32 %3, 1
  %5 = icmp ne i32 %4, 0
  %bit = zext i1 %5 to i32
  store i32 %bit, ptr @out, align 4
  ret void
}

; Function Attrs: nocallback nofree nosync nounwind speculatable willreturn memory(none)
declare i32 @llvm.vector.reduce.add.v2i32(<2 x i32>) #0

; Function Attrs: nocallback nofree nosync nounwind speculatable willreturn memory(none)
declare i1 @llvm.abs.i1(i1, i1 immarg) #0

attributes #0 = { nocallback nofree nosync nounwind speculatable willreturn memory(none) }
