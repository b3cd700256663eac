; A loop of 40 rounds, whose sum is used after it, and one whose number of rounds is read.
; shader name=shade
@in = external constant i32
@out = external global i32

define void @main() {
entry:
  %n = load i32, ptr @in
  br label %loop

loop:
  %i = phi i32 [ 2, %entry ], [ %next, %loop ]
  %sum = phi i32 [ 0, %entry ], [ %more, %loop ]
  %more = add i32 %sum, %n
  %next = add i32 %i, 3
  %goesOn = icmp ne i32 %next, 122
  br i1 %goesOn, label %loop, label %then

then:
  %isPositive = icmp sgt i32 %n, 0
  br i1 %isPositive, label %second, label %end

second:
  %j = phi i32 [ 0, %then ], [ %nextJ, %second ]
  %nextJ = add nsw i32 %j, 1
  store i32 %nextJ, ptr @out
  %isDone = icmp sge i32 %nextJ, %n
  br i1 %isDone, label %end, label %second

end:
  %result = phi i32 [ %more, %then ], [ %nextJ, %second ]
  store i32 %result, ptr @out
  ret void
}
