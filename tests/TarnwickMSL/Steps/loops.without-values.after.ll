; shader
; merge header=%loop at=%merge continue=%continue
@in = external constant i32
@out = external global i32

define void @main() {
entry:
  %n = load i32, ptr @in, align 4
  br label %loop

loop:                                             ; preds = %continue, %entry
  %i = phi i32 [ 0, %entry ], [ %next, %continue ]
  br label %loop.split

loop.split:                                       ; preds = %loop
  store i32 %i, ptr @out, align 4
  %next = add i32 %i, 3
  %isDone = icmp uge i32 %next, %n
  br i1 %isDone, label %merge, label %continue

continue:                                         ; preds = %loop.split
  br label %loop

merge:                                            ; preds = %loop.split
  br label %end

end:                                              ; preds = %merge
  ret void
}
