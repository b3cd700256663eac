; shader
@in = external constant i32
@msl.buffer.0 = external global [4 x i32]

define void @main() {
entry:
  %halves = alloca [2 x <2 x i32>], align 8
  %i = load i32, ptr @in, align 4
  %isSmall = icmp ult i32 %i, 4
  br i1 %isSmall, label %small, label %end

small:                                            ; preds = %entry
  %0 = getelementptr [4 x i32], ptr @msl.buffer.0, i32 0, i32 %i
  store i32 1, ptr %0, align 4
  %second = shl i32 %i, 3
  %bytes = and i32 %second, 8
  %1 = ashr i32 %bytes, 3
  %2 = shl i32 %1, 3
  %half = getelementptr i8, ptr %halves, i32 %2
  store <2 x i32> zeroinitializer, ptr %half, align 8
  %isOdd = trunc i32 %i to i1
  %choice = select i1 %isOdd, i32 3, i32 1
  %3 = sub i32 %choice, 1
  %4 = udiv i32 %3, 2
  %5 = mul i32 %4, 2
  %6 = getelementptr i32, ptr %halves, i32 1
  %7 = getelementptr i32, ptr %6, i32 %5
  store i32 2, ptr %7, align 4
  %four = and i32 %i, 4
  %8 = ashr i32 %four, 2
  %9 = shl i32 %8, 2
  %10 = add i32 %9, 8
  %late = getelementptr i8, ptr %halves, i32 %10
  store i32 3, ptr %late, align 4
  %doubled = shl i32 %four, 1
  %11 = ashr i32 %doubled, 3
  %12 = shl i32 %11, 3
  %shifted = getelementptr i8, ptr %halves, i32 %12
  store i32 4, ptr %shifted, align 4
  %two = and i32 %i, 2
  %13 = ashr i32 %two, 1
  %14 = mul i32 %13, 12
  %multiplied = getelementptr i8, ptr %halves, i32 %14
  store i32 5, ptr %multiplied, align 4
  br label %end

end:                                              ; preds = %small, %entry
  ret void
}
