; shader
@in = external constant i32
@table = external global [64 x i32]

define void @main() {
entry:
  %at = load i32, ptr @in, align 4
  br label %round

round:                                            ; preds = %Flow, %entry
  %i = phi i32 [ 0, %entry ], [ %1, %Flow ]
  %isEnd = icmp ne i32 %i, %at
  br i1 %isEnd, label %last, label %Flow

last:                                             ; preds = %round
  %0 = getelementptr [64 x i32], ptr @table, i32 0, i32 %at
  store i32 %i, ptr %0, align 4
  %next = add i32 %i, 1
  %isDone = icmp eq i32 %next, 8
  br label %Flow

Flow:                                             ; preds = %last, %round
  %1 = phi i32 [ %next, %last ], [ undef, %round ]
  %2 = phi i1 [ %isDone, %last ], [ true, %round ]
  br i1 %2, label %end, label %round

end:                                              ; preds = %Flow
  ret void
}
