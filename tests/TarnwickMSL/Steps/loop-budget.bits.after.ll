; shader name=shade uses_loop_budget=1
; variable kind=loop_report global=msl.loop_report scalar=uint32 element_bytes=4 is_reference=1
@in = external constant i32
@msl.loop_report = external global i32

define void @main() {
entry:
  %rounds = alloca i32, align 4, !msl.rounds !0
  store i32 0, ptr %rounds, align 4
  %budget = call i32 @msl.loop_budget()
  %x = load i32, ptr @in, align 4
  %some = urem i32 %x, 7
  %limit = add nuw nsw i32 %some, 3
  br label %loop

loop:                                             ; preds = %rest, %entry
  %i = phi i32 [ 0, %entry ], [ %next, %rest ]
  %y = mul i32 %x, %i
  %isFound = icmp eq i32 %y, 20
  br i1 %isFound, label %more, label %rest

rest:                                             ; preds = %loop
  %next = add nuw nsw i32 %i, 1
  %goesOn = icmp ugt i32 %limit, %next
  br i1 %goesOn, label %loop, label %more

more:                                             ; preds = %more, %rest, %loop
  %z = phi i32 [ %x, %rest ], [ %x, %loop ], [ %triple, %more ]
  %triple = mul i32 %z, 3
  %isOpen = icmp ne i32 %triple, 1
  %0 = load i32, ptr %rounds, align 4
  %1 = add i32 %0, 1
  store i32 %1, ptr %rounds, align 4
  %2 = load i32, ptr %rounds, align 4
  %3 = icmp ugt i32 %2, %budget
  %4 = xor i1 %3, true
  %5 = and i1 %isOpen, %4
  br i1 %5, label %more, label %end

end:                                              ; preds = %more
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
