; shader
; merge header=%test at=%merge continue=%continue
@in = external constant i32
@out = external global i32

define void @main() {
entry:
  %n = load i32, ptr @in, align 4
  br label %test

test:                                             ; preds = %continue, %entry
  %i = phi i32 [ 0, %entry ], [ %next, %continue ]
  %goesOn = icmp ult i32 %i, %n
  br i1 %goesOn, label %test.split, label %merge

test.split:                                       ; preds = %test
  br label %round

round:                                            ; preds = %test.split
  store i32 %i, ptr @out, align 4
  %next = add i32 %i, 1
  br label %continue

continue:                                         ; preds = %round
  br label %test

merge:                                            ; preds = %test
  br label %end

end:                                              ; preds = %merge
  ret void
}

declare i1 @msl.leaves_from_header(i1)
