; shader
@in = external constant i32
@out = external global i32

define void @main() {
  %x = load i32, ptr @in, align 4
  %1 = trunc i32 %x to i8
  %2 = and i8 %1, 31
  %3 = shl i8 %2, 3
  %4 = ashr i8 %3, 3
  %5 = ashr i8 %4, 1
  %6 = and i8 %5, 31
  %7 = shl i8 %6, 3
  %8 = ashr i8 %7, 3
  %9 = sext i8 %8 to i32
  store i32 %9, ptr @out, align 4
  ret void
}
