; shader name=shade uses_loop_budget=1
; variable kind=loop_report global=msl.loop_report scalar=uint32 element_bytes=4 is_reference=1
@in = external constant i32
@msl.loop_report = external global i32

define void @main() {
entry:
  %rounds = alloca i32, align 4, !msl.rounds !0
  store i32 0, ptr %rounds, align 4
  %budget = call i32 @msl.loop_budget()
  %first = load i32, ptr @in, align 4
  br label %loop

loop:                                             ; preds = %loop, %entry
  %x = phi i32 [ %first, %entry ], [ %next, %loop ]
  %next = mul i32 %x, 3
  %goesOn = icmp ne i32 %next, 1
  %0 = load i32, ptr %rounds, align 4
  %1 = add i32 %0, 1
  store i32 %1, ptr %rounds, align 4
  %2 = load i32, ptr %rounds, align 4
  %3 = icmp ugt i32 %2, %budget
  %4 = xor i1 %3, true
  %5 = and i1 %goesOn, %4
  br i1 %5, label %loop, label %end

end:                                              ; preds = %loop
  %6 = load i32, ptr %rounds, align 4
  %7 = icmp ugt i32 %6, %budget
  br i1 %7, label %spent, label %end.split

end.split:                                        ; preds = %end, %spent
  ret void

spent:                                            ; preds = %end
  store i32 1, ptr @msl.loop_report, align 4
  br label %end.split
}

declare i32 @msl.loop_budget()

!0 = !{}
