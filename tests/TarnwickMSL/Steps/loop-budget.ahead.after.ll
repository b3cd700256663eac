; shader name=shade uses_loop_budget=1
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
  %umax = call i32 @llvm.umax.i32(i32 %n, i32 1)
  %0 = add i32 %umax, -1
  %1 = call i32 @llvm.umin.i32(i32 %0, i32 1048576)
  %2 = load i32, ptr %rounds, align 4
  %3 = add i32 %1, 0
  %4 = mul i32 %3, 1
  %5 = add i32 %2, %4
  store i32 %5, ptr %rounds, align 4
  %6 = load i32, ptr %rounds, align 4
  %7 = icmp ugt i32 %6, %budget
  br i1 %7, label %spent, label %entry.split

entry.split:                                      ; preds = %entry
  br label %loop

loop:                                             ; preds = %loop, %entry.split
  %i = phi i32 [ 0, %entry.split ], [ %next, %loop ]
  store i32 %i, ptr @out, align 4
  %next = add nuw i32 %i, 1
  %goesOn = icmp ult i32 %next, %n
  br i1 %goesOn, label %loop, label %end

end:                                              ; preds = %spent, %loop
  ret void

spent:                                            ; preds = %entry
  store i32 1, ptr @msl.loop_report, align 4
  br label %end
}

declare i32 @msl.loop_budget()

; Function Attrs: nocallback nofree nosync nounwind speculatable willreturn memory(none)
declare i32 @llvm.umax.i32(i32, i32) #0

; Function Attrs: nocallback nofree nosync nounwind speculatable willreturn memory(none)
declare i32 @llvm.umin.i32(i32, i32) #0

attributes #0 = { nocallback nofree nosync nounwind speculatable willreturn memory(none) }

!0 = !{}
