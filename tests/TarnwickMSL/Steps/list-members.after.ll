; shader
%Row = type { <3 x float>, [2 x i32], half }

@in = external constant [4 x i32]
@out = external global [4 x float]

define void @main() {
  %list1 = alloca [9 x [2 x i32]], align 4
  %list2 = alloca [9 x <3 x float>], align 16
  %other = alloca [9 x %Row], align 16
  %i = load i32, ptr @in, align 4
  %is = icmp eq i32 %i, 3
  %1 = getelementptr [9 x [2 x i32]], ptr %list1, i32 0, i32 %i, i32 1
  store i32 5, ptr %1, align 4
  %2 = getelementptr [9 x <3 x float>], ptr %list2, i32 0, i32 2, i32 1
  %3 = load float, ptr %2, align 4
  %4 = getelementptr [9 x <3 x float>], ptr %list2, i32 0, i32 %i, i32 2
  %5 = load float, ptr %4, align 4
  %6 = select i1 %is, float %3, float %5
  store float %6, ptr @out, align 4
  %both = getelementptr [9 x %Row], ptr %other, i32 0, i32 %i, i32 1, i32 1
  store i64 7, ptr %both, align 8
  ret void
}
