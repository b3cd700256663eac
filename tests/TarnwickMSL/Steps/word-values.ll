; A loop that adds up a long integer, a comparison of bytes, and a product of halves.
; lacks int8=1 int16=1 int64=1 half=1
@in = external constant i32
@out = external global [3 x i32]

define void @main() {
entry:
  %x = load i32, ptr @in
  %byte = trunc i32 %x to i8
  %wide = sext i32 %x to i64
  br label %round
round:
  %sum = phi i64 [ 5, %entry ], [ %next, %round ]
  %i = phi i32 [ 0, %entry ], [ %after, %round ]
  %next = add i64 %sum, %wide
  %after = add i32 %i, 1
  %isMore = icmp ult i32 %after, %x
  br i1 %isMore, label %round, label %end
end:
  %high = lshr i64 %next, 32
  %word = trunc i64 %high to i32
  store i32 %word, ptr @out
  %isLess = icmp slt i8 %byte, 9
  %flag = zext i1 %isLess to i32
  store i32 %flag, ptr getelementptr (i8, ptr @out, i32 4)
  %half = bitcast i32 %x to <2 x half>
  %a = extractelement <2 x half> %half, i32 0
  %product = fmul half %a, 0xH4200
  %real = fpext half %product to float
  %bits = bitcast float %real to i32
  store i32 %bits, ptr getelementptr (i8, ptr @out, i32 8)
  ret void
}
