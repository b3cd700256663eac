; dead code
; shader
@in = external constant i32
@a = external global [4 x i32]
@b = external global [4 x i32]

define void @main() {
  %i = load i32, ptr @in, align 4
  %isA = icmp eq i32 %i, 1
  %1 = mul i32 %i, 1
  %2 = add i32 0, %1
  %3 = add i32 0, %2
  %inB = getelementptr [4 x i32], ptr @b, i32 0, i32 %i
  %4 = select i1 %isA, i32 0, i32 1
  %chosen = select i1 %isA, ptr @a, ptr %inB
  %5 = getelementptr i32, ptr @b, i32 %3
  %6 = load i32, ptr %5, align 4
  %7 = icmp eq i32 %4, 1
  %8 = load i32, ptr @a, align 4
  %9 = icmp eq i32 %4, 0
  %10 = select i1 %9, i32 %8, i32 %6
  %11 = icmp eq i32 %4, 1
  br i1 %11, label %12, label %14

12:                                               ; preds = %0
  %13 = getelementptr i32, ptr @b, i32 %3
  store i32 %10, ptr %13, align 4
  br label %14

14:                                               ; preds = %0, %12
  %15 = icmp eq i32 %4, 0
  br i1 %15, label %16, label %17

16:                                               ; preds = %14
  store i32 %10, ptr @a, align 4
  br label %17

17:                                               ; preds = %14, %16
  ret void
}
