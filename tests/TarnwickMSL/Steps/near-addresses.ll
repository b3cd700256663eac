@in = external constant i32
@msl.buffer.0 = external global [4 x i32]

define void @main() {
entry:
  %halves = alloca [2 x <2 x i32>]
  %i = load i32, ptr @in
  %place = getelementptr [4 x i32], ptr @msl.buffer.0, i32 0, i32 %i
  %isSmall = icmp ult i32 %i, 4
  br i1 %isSmall, label %small, label %end

small:
  store i32 1, ptr %place
  %second = shl i32 %i, 3
  %bytes = and i32 %second, 8
  %half = getelementptr i8, ptr %halves, i32 %bytes
  store <2 x i32> zeroinitializer, ptr %half
  %isOdd = trunc i32 %i to i1
  %choice = select i1 %isOdd, i32 3, i32 1
  %word = getelementptr i32, ptr %halves, i32 %choice
  store i32 2, ptr %word
  %four = and i32 %i, 4
  %bits = or disjoint i32 %four, 8
  %late = getelementptr i8, ptr %halves, i32 %bits
  store i32 3, ptr %late
  %doubled = shl i32 %four, 1
  %shifted = getelementptr i8, ptr %halves, i32 %doubled
  store i32 4, ptr %shifted
  %two = and i32 %i, 2
  %sixfold = mul i32 %two, 6
  %multiplied = getelementptr i8, ptr %halves, i32 %sixfold
  store i32 5, ptr %multiplied
  br label %end

end:
  ret void
}
