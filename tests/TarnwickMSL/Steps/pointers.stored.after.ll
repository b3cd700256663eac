; dead code
; shader
@in = external constant i32

define void @main() {
  %a = alloca [4 x float], align 4
  %b = alloca float, align 4
  %list = alloca [40 x i64], align 8
  %i = load i32, ptr @in, align 4
  %first = getelementptr [40 x ptr], ptr %list, i32 0, i32 %i
  %third = getelementptr [4 x float], ptr %a, i32 0, i32 3
  store i64 1, ptr %first, align 8
  %j = add i32 %i, 1
  %second = getelementptr [40 x ptr], ptr %list, i32 0, i32 %j
  store i64 4294967296, ptr %second, align 8
  %1 = load i64, ptr %first, align 8
  %2 = inttoptr i64 %1 to ptr
  %3 = lshr i64 %1, 32
  %4 = trunc i64 %3 to i32
  %5 = trunc i64 %1 to i32
  %6 = mul i32 %5, 1
  %7 = icmp eq i32 %4, 0
  br i1 %7, label %8, label %10

8:                                                ; preds = %0
  %9 = getelementptr [12 x i8], ptr %a, i32 %6
  store float 1.000000e+00, ptr %9, align 4
  br label %10

10:                                               ; preds = %0, %8
  %11 = icmp eq i32 %4, 1
  br i1 %11, label %12, label %14

12:                                               ; preds = %10
  %13 = getelementptr [12 x i8], ptr %b, i32 %6
  store float 1.000000e+00, ptr %13, align 4
  br label %14

14:                                               ; preds = %10, %12
  ret void
}
