; A choice of elements of all arrays in an array gets an index for each array.
@in = external constant i32

define void @main() {
  %matrices = alloca { float, [4 x [3 x <2 x float>]] }
  %i = load i32, ptr @in
  %three = mul i32 %i, 3
  %second = add i32 %three, 1
  %third = add i32 %three, 2
  %isOdd = trunc i32 %i to i1
  %choice = select i1 %isOdd, i32 %second, i32 %third
  %first = getelementptr i8, ptr %matrices, i32 8
  %place = getelementptr [8 x i8], ptr %first, i32 %choice
  store <2 x float> zeroinitializer, ptr %place
  ret void
}
