; shader name=shade uses_loop_budget=1
; variable kind=output global=out
; variable kind=loop_report global=msl.loop_report scalar=uint32 element_bytes=4 is_reference=1
@in = external constant i32
@out = external global i32
@msl.loop_report = external global i32

define void @main() {
entry:
  %rounds = alloca i32, align 4, !msl.rounds !0
  store i32 0, ptr %rounds, align 4
  %budget = call i32 @msl.loop_budget()
  %n = load i32, ptr @in, align 4
  %runs = icmp sgt i32 %n, 0
  %0 = add i32 %n, -1
  br label %outer

outer:                                            ; preds = %again, %entry
  %k = phi i32 [ 0, %entry ], [ %nextK, %again ]
  %sum = phi i32 [ 0, %entry ], [ %total, %again ]
  br i1 %runs, label %before, label %again

before:                                           ; preds = %outer
  %1 = call i32 @llvm.umin.i32(i32 %0, i32 1048576)
  %2 = load i32, ptr %rounds, align 4
  %3 = add i32 %1, 2
  %4 = mul i32 %3, 1
  %5 = add i32 %budget, 1
  %6 = call i32 @llvm.umin.i32(i32 %4, i32 %5)
  %7 = add i32 %2, %6
  store i32 %7, ptr %rounds, align 4
  %8 = load i32, ptr %rounds, align 4
  %9 = icmp ugt i32 %8, %budget
  br i1 %9, label %left, label %before.split

before.split:                                     ; preds = %before
  br label %inner

inner:                                            ; preds = %inner, %before.split
  %i = phi i32 [ 0, %before.split ], [ %next, %inner ]
  %part = phi i32 [ %sum, %before.split ], [ %more, %inner ]
  %more = xor i32 %part, %i
  %next = add nuw nsw i32 %i, 1
  %goesOn = icmp slt i32 %next, %n
  br i1 %goesOn, label %inner, label %left

left:                                             ; preds = %before, %inner
  %found = phi i32 [ %more, %inner ], [ 0, %before ]
  br label %again

again:                                            ; preds = %left, %outer
  %total = phi i32 [ %sum, %outer ], [ %found, %left ]
  %nextK = add nuw nsw i32 %k, 1
  %stays = icmp ult i32 %nextK, 5
  br i1 %stays, label %outer, label %end

end:                                              ; preds = %again
  store i32 %total, ptr @out, align 4
  %10 = load i32, ptr %rounds, align 4
  %11 = icmp ugt i32 %10, %budget
  br i1 %11, label %spent, label %end.split

end.split:                                        ; preds = %end, %spent
  ret void

spent:                                            ; preds = %end
  store i32 0, ptr @out, align 4
  store i32 1, ptr @msl.loop_report, align 4
  br label %end.split
}

declare i32 @msl.loop_budget()

; Function Attrs: nocallback nofree nosync nounwind speculatable willreturn memory(none)
declare i32 @llvm.umin.i32(i32, i32) #0

attributes #0 = { nocallback nofree nosync nounwind speculatable willreturn memory(none) }

!0 = !{}
