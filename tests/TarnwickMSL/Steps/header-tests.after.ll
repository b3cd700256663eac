; shader name=shade
@in = external constant i32
@out = external global i32

define void @main() {
entry:
  %n = load i32, ptr @in, align 4
  br label %loop

loop:                                             ; preds = %loop.split, %entry
  %i = phi i32 [ 2, %entry ], [ %next, %loop.split ]
  %sum = phi i32 [ 0, %entry ], [ %more, %loop.split ]
  %0 = icmp slt i32 %i, 122
  br i1 %0, label %loop.split, label %then.split

loop.split:                                       ; preds = %loop
  %more = add i32 %sum, %n
  %next = add i32 %i, 3
  %goesOn = icmp ne i32 %next, 122
  br label %loop

then.split:                                       ; preds = %loop
  br label %then

then:                                             ; preds = %then.split
  %isPositive = icmp sgt i32 %n, 0
  br i1 %isPositive, label %second, label %end

second:                                           ; preds = %second.split, %then
  %j = phi i32 [ 0, %then ], [ %nextJ, %second.split ]
  %1 = icmp slt i32 %j, %n
  br i1 %1, label %second.split, label %second.split.end_crit_edge

second.split:                                     ; preds = %second
  %nextJ = add nsw i32 %j, 1
  store i32 %nextJ, ptr @out, align 4
  %isDone = icmp sge i32 %nextJ, %n
  br label %second

second.split.end_crit_edge:                       ; preds = %second
  br label %end

end:                                              ; preds = %second.split.end_crit_edge, %then
  %result = phi i32 [ %sum, %then ], [ %j, %second.split.end_crit_edge ]
  store i32 %result, ptr @out, align 4
  ret void
}
