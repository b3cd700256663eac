; shader
@in = external constant i32
@msl.buffer.0 = external global [4 x i32]

define void @main() {
entry:
  %i = load i32, ptr @in, align 4
  %isSmall = icmp ult i32 %i, 4
  br i1 %isSmall, label %small, label %end

small:                                            ; preds = %entry
  %0 = getelementptr [4 x i32], ptr @msl.buffer.0, i32 0, i32 %i
  store i32 1, ptr %0, align 4
  br label %end

end:                                              ; preds = %small, %entry
  ret void
}
