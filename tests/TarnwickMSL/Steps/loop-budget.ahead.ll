; The number of rounds is known when the loop is entered: all of them are paid for at once.
; shader name=shade
@in = external constant i32
@out = external global i32

define void @main() {
entry:
  %n = load i32, ptr @in
  br label %loop

loop:
  %i = phi i32 [ 0, %entry ], [ %next, %loop ]
  store i32 %i, ptr @out
  %next = add nuw i32 %i, 1
  %goesOn = icmp ult i32 %next, %n
  br i1 %goesOn, label %loop, label %end

end:
  ret void
}
