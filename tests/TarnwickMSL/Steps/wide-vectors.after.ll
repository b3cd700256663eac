; shader
@msl.buffer.0 = external global [8 x i8]
@out = external global [2 x i32]

define void @main() {
  %1 = load i32, ptr @msl.buffer.0, align 4
  %2 = load i32, ptr getelementptr (i8, ptr @msl.buffer.0, i64 4), align 4
  %3 = trunc i32 %1 to i8
  %4 = lshr i32 %1, 8
  %5 = trunc i32 %4 to i8
  %6 = lshr i32 %1, 16
  %7 = trunc i32 %6 to i8
  %8 = lshr i32 %1, 24
  %9 = trunc i32 %8 to i8
  %10 = trunc i32 %2 to i8
  %11 = lshr i32 %2, 8
  %12 = trunc i32 %11 to i8
  %13 = lshr i32 %2, 16
  %14 = trunc i32 %13 to i8
  %15 = lshr i32 %2, 24
  %16 = trunc i32 %15 to i8
  %17 = zext i8 %3 to i32
  %18 = zext i8 %5 to i32
  %19 = shl i32 %18, 8
  %20 = or i32 %17, %19
  %21 = zext i8 %7 to i32
  %22 = shl i32 %21, 16
  %23 = or i32 %20, %22
  %24 = zext i8 %9 to i32
  %25 = shl i32 %24, 24
  %26 = or i32 %23, %25
  %27 = zext i8 %10 to i32
  %28 = zext i8 %12 to i32
  %29 = shl i32 %28, 8
  %30 = or i32 %27, %29
  %31 = zext i8 %14 to i32
  %32 = shl i32 %31, 16
  %33 = or i32 %30, %32
  %34 = zext i8 %16 to i32
  %35 = shl i32 %34, 24
  %36 = or i32 %33, %35
  %37 = insertelement <2 x i32> poison, i32 %26, i64 0
  %38 = insertelement <2 x i32> %37, i32 %36, i64 1
  store <2 x i32> %38, ptr @out, align 8
  ret void
}
