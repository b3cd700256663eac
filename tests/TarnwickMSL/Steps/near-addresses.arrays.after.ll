; shader
@in = external constant i32

define void @main() {
  %matrices = alloca { float, [4 x [3 x <2 x float>]] }, align 8
  %i = load i32, ptr @in, align 4
  %three = mul i32 %i, 3
  %second = add i32 %three, 1
  %third = add i32 %three, 2
  %isOdd = trunc i32 %i to i1
  %choice = select i1 %isOdd, i32 %second, i32 %third
  %first = getelementptr i8, ptr %matrices, i32 8
  %1 = add i32 %choice, 0
  %2 = udiv i32 %1, 3
  %3 = urem i32 %1, 3
  %4 = getelementptr i8, ptr %matrices, i32 8
  %5 = getelementptr [24 x i8], ptr %4, i32 %2
  %6 = getelementptr [8 x i8], ptr %5, i32 %3
  store <2 x float> zeroinitializer, ptr %6, align 8
  ret void
}
