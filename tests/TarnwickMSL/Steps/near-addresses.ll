@in = external constant i32
@msl.buffer.0 = external global [4 x i32]

define void @main() {
entry:
  %i = load i32, ptr @in
  %place = getelementptr [4 x i32], ptr @msl.buffer.0, i32 0, i32 %i
  %isSmall = icmp ult i32 %i, 4
  br i1 %isSmall, label %small, label %end

small:
  store i32 1, ptr %place
  br label %end

end:
  ret void
}
