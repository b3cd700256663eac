; A loop that its header alone leaves stays so.
@in = external constant i32
@out = external global i32

define void @main() {
entry:
  %n = load i32, ptr @in
  br label %test

test:
  %i = phi i32 [ 0, %entry ], [ %next, %round ]
  %goesOn = icmp ult i32 %i, %n
  br i1 %goesOn, label %round, label %end

round:
  store i32 %i, ptr @out
  %next = add i32 %i, 1
  br label %test

end:
  ret void
}
