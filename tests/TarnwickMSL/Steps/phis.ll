; The two differ only where one of them is undefined.
; shader name=shade
; merge header=%test at=%end continue=%round
@in = external constant i32
@out = external global i32

define void @main() {
entry:
  %n = load i32, ptr @in
  br label %test

test:
  %goes = phi i32 [ %n, %entry ], [ %next, %round ]
  %leaves = phi i32 [ undef, %entry ], [ %next, %round ]
  %isDone = icmp ugt i32 %goes, 9
  br i1 %isDone, label %end, label %round

round:
  %next = add i32 %goes, 3
  br label %test

end:
  store i32 %leaves, ptr @out
  ret void
}
