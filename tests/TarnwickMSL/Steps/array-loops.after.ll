; shader
@in = external constant i32
@out = external global i32
@table = internal constant [4 x i32] [i32 3, i32 5, i32 7, i32 11]

define void @main() {
entry:
  %n = load i32, ptr @in, align 4
  br label %loop

loop:                                             ; preds = %loop, %entry
  %round = phi i32 [ %0, %loop ], [ 0, %entry ]
  %i = phi i32 [ 0, %entry ], [ %next, %loop ]
  %sum = phi i32 [ 0, %entry ], [ %more, %loop ]
  %place = getelementptr [4 x i32], ptr @table, i32 0, i32 %i
  %value = load i32, ptr %place, align 4
  %more = add i32 %sum, %value
  %next = add i32 %i, 1
  %goesOn = icmp ult i32 %next, %n
  %0 = add nuw i32 %round, 1
  %1 = icmp ult i32 %0, 4
  %2 = and i1 %goesOn, %1
  br i1 %2, label %loop, label %end

end:                                              ; preds = %loop
  store i32 %more, ptr @out, align 4
  ret void
}
