; shader
@in = external constant <4 x i32>
@out = external global [4 x i32]
@other = external global [4 x i32]

; Function Attrs: convergent nounwind willreturn memory(none)
declare i32 @msl.simd_reduce_add.s32(i32) #0

define void @main() {
entry:
  %x = load i32, ptr @in, align 4
  %y = load i32, ptr getelementptr inbounds (i8, ptr @in, i32 4), align 4
  %less = icmp slt i32 %x, %y
  %sum = call i32 @msl.simd_reduce_add.s32(i32 %x) #0
  store i32 %sum, ptr @out, align 4
  br i1 %less, label %more, label %end

more:                                             ; preds = %entry
  %both = call i32 @msl.simd_reduce_add.s32(i32 %x) #0
  %old = load i32, ptr @other, align 4
  %added = add i32 %both, %old
  store i32 %added, ptr @other, align 4
  %last = add i32 %added, 1
  store i32 %last, ptr getelementptr (i8, ptr @out, i64 4), align 4
  br label %end

end:                                              ; preds = %more, %entry
  ret void
}

attributes #0 = { convergent nounwind willreturn memory(none) }
