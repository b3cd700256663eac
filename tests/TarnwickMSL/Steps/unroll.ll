@in = external constant i32
@out = external global i32

define void @main() {
entry:
  %x = load i32, ptr @in
  br label %loop

loop:
  %i = phi i32 [ 0, %entry ], [ %next, %loop ]
  %product = phi i32 [ 1, %entry ], [ %more, %loop ]
  %factor = add i32 %x, %i
  %more = mul i32 %product, %factor
  %next = add i32 %i, 1
  %goesOn = icmp ult i32 %next, 3
  br i1 %goesOn, label %loop, label %end

end:
  store i32 %more, ptr @out
  ret void
}
