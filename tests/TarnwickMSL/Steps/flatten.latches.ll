; Two exits of a loop that meet at the end of a round of the loop around it: that end stays one block.
; shader name=shade
@in = external constant i32
@out = external global i32

define void @main() {
entry:
  %limit = load i32, ptr @in
  %divisor = or i32 %limit, 1
  br label %outer

outer:
  %sum = phi i32 [ 0, %entry ], [ %left, %again ]
  %isDone = icmp ugt i32 %sum, %limit
  br i1 %isDone, label %after, label %inner

inner:
  %at = phi i32 [ 0, %outer ], [ %next, %rest ]
  %value = phi i32 [ %sum, %outer ], [ %nextValue, %rest ]
  %bit = and i32 %value, 4
  %isFound = icmp ne i32 %bit, 0
  br i1 %isFound, label %again, label %rest

rest:
  %share = udiv i32 100, %divisor
  %nextValue = add i32 %value, %share
  %next = add i32 %at, 1
  %isLast = icmp eq i32 %next, 5
  br i1 %isLast, label %again, label %inner

again:
  %left = phi i32 [ %value, %inner ], [ %nextValue, %rest ]
  br label %outer

after:
  store i32 %sum, ptr @out
  ret void
}
