; Equal values are computed once: a comparison with its sides exchanged, a load after a store to another variable, an
; address in other steps, and the condition in the block that it leads to. A convergent call in another block stays, and
; so does the load after the store to its own address, which gets the stored value.
@in = external constant <4 x i32>
@out = external global [4 x i32]
@other = external global [4 x i32]

declare i32 @msl.simd_reduce_add.s32(i32) #0

define void @main() {
entry:
  %x = load i32, ptr @in
  %first = getelementptr i8, ptr @in, i64 4
  %y = load i32, ptr %first
  %less = icmp slt i32 %x, %y
  %sum = call i32 @msl.simd_reduce_add.s32(i32 %x) #0
  store i32 %sum, ptr @out
  br i1 %less, label %more, label %end

more:
  %again = getelementptr i32, ptr @in, i64 1
  %z = load i32, ptr %again
  %greater = icmp sgt i32 %z, %x
  %one = zext i1 %greater to i32
  %both = call i32 @msl.simd_reduce_add.s32(i32 %x) #0
  %old = load i32, ptr @other
  %added = add i32 %both, %old
  store i32 %added, ptr @other
  %new = load i32, ptr @other
  %last = add i32 %new, %one
  store i32 %last, ptr getelementptr (i8, ptr @out, i64 4)
  br label %end

end:
  ret void
}

attributes #0 = { convergent nounwind willreturn memory(none) }
