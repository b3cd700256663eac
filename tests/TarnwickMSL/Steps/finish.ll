; The square moves out of the loop.
@in = external constant i32
@out = external global i32

define void @main() {
entry:
  %x = load i32, ptr @in
  br label %loop

loop:
  %i = phi i32 [ 0, %entry ], [ %next, %loop ]
  %square = mul i32 %x, %x
  %next = add i32 %i, %square
  %goesOn = icmp ult i32 %next, %x
  br i1 %goesOn, label %loop, label %end

end:
  store i32 %next, ptr @out
  ret void
}
