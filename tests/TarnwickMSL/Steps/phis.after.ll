; shader name=shade
; merge header=%test at=%end continue=%round
@in = external constant i32
@out = external global i32

define void @main() {
entry:
  %n = load i32, ptr @in, align 4
  br label %test

test:                                             ; preds = %round, %entry
  %goes = phi i32 [ %n, %entry ], [ %next, %round ]
  %isDone = icmp ugt i32 %goes, 9
  br i1 %isDone, label %end, label %round

round:                                            ; preds = %test
  %next = add i32 %goes, 3
  br label %test

end:                                              ; preds = %test
  store i32 %goes, ptr @out, align 4
  ret void
}
