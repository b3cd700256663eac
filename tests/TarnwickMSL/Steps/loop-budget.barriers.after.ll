; shader name=check stage=kernel uses_loop_budget=1
; variable kind=loop_report global=msl.loop_report scalar=uint32 element_bytes=4 is_reference=1
@in = external constant i32
@out = external global i32
@msl.loop_report = external global i32

define void @main() {
entry:
  %rounds = alloca i32, align 4, !msl.rounds !0
  store i32 0, ptr %rounds, align 4
  %rounds1 = alloca i32, align 4, !msl.rounds !0
  store i32 0, ptr %rounds1, align 4
  %budget = call i32 @msl.loop_budget()
  %first = load i32, ptr @in, align 4
  call void @msl.grid_mark(i1 true)
  br label %own

own:                                              ; preds = %own, %entry
  %x = phi i32 [ %first, %entry ], [ %next, %own ]
  %next = mul i32 %x, 3
  %goesOn = icmp ne i32 %next, 1
  %0 = load i32, ptr %rounds, align 4
  %1 = add i32 %0, 1
  store i32 %1, ptr %rounds, align 4
  %2 = load i32, ptr %rounds, align 4
  %3 = icmp ugt i32 %2, %budget
  %4 = xor i1 %3, true
  %5 = and i1 %goesOn, %4
  br i1 %5, label %own, label %between.split

between.split:                                    ; preds = %own
  %6 = load i32, ptr %rounds, align 4
  %7 = icmp ugt i32 %6, %budget
  call void @msl.budget_mark(i1 %7)
  br label %between

between:                                          ; preds = %between.split
  store i32 %next, ptr @out, align 4
  br label %together

together:                                         ; preds = %together, %between
  call void @msl.barrier.1(i32 2, i32 8)
  %y = load i32, ptr @out, align 4
  %repeats = icmp ne i32 %y, 7
  %8 = load i32, ptr %rounds1, align 4
  %9 = add i32 %8, 1
  store i32 %9, ptr %rounds1, align 4
  %10 = load i32, ptr %rounds1, align 4
  %11 = icmp ugt i32 %10, %budget
  %12 = xor i1 %11, true
  %13 = and i1 %repeats, %12
  br i1 %13, label %together, label %end.split2

end.split2:                                       ; preds = %together
  %14 = load i32, ptr %rounds1, align 4
  %15 = icmp ugt i32 %14, %budget
  call void @msl.budget_mark(i1 %15)
  br label %end

end:                                              ; preds = %end.split2
  %16 = load i32, ptr %rounds, align 4
  %17 = icmp ugt i32 %16, %budget
  %18 = load i32, ptr %rounds1, align 4
  %19 = icmp ugt i32 %18, %budget
  %20 = or i1 %17, %19
  br i1 %20, label %spent, label %end.split

end.split:                                        ; preds = %end, %spent
  ret void

spent:                                            ; preds = %end
  store i32 1, ptr @msl.loop_report, align 4
  br label %end.split
}

; Function Attrs: nounwind
declare void @msl.grid_mark(i1) #0

; Function Attrs: convergent nounwind
declare void @msl.barrier.1(i32, i32) #1

declare i32 @msl.loop_budget()

; Function Attrs: nounwind
declare void @msl.budget_mark(i1) #0

attributes #0 = { nounwind }
attributes #1 = { convergent nounwind }

!0 = !{}
