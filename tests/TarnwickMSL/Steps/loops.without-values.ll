@in = external constant i32
@out = external global i32

define void @main() {
entry:
  %n = load i32, ptr @in
  br label %loop

loop:
  %i = phi i32 [ 0, %entry ], [ %next, %loop ]
  store i32 %i, ptr @out
  %next = add i32 %i, 3
  %isDone = icmp uge i32 %next, %n
  br i1 %isDone, label %end, label %loop

end:
  ret void
}
