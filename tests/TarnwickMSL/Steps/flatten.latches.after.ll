; shader name=shade
@in = external constant i32
@out = external global i32

define void @main() {
entry:
  %limit = load i32, ptr @in, align 4
  %divisor = or i32 %limit, 1
  br label %outer

outer.again:                                      ; preds = %rest, %inner
  %sum.ph = phi i32 [ %value, %inner ], [ %nextValue, %rest ]
  br label %outer

outer:                                            ; preds = %outer.again, %entry
  %sum = phi i32 [ 0, %entry ], [ %sum.ph, %outer.again ]
  %isDone = icmp ugt i32 %sum, %limit
  br i1 %isDone, label %after, label %inner

inner:                                            ; preds = %rest, %outer
  %at = phi i32 [ 0, %outer ], [ %next, %rest ]
  %value = phi i32 [ %sum, %outer ], [ %nextValue, %rest ]
  %bit = and i32 %value, 4
  %isFound = icmp ne i32 %bit, 0
  br i1 %isFound, label %outer.again, label %rest

rest:                                             ; preds = %inner
  %share = udiv i32 100, %divisor
  %nextValue = add i32 %value, %share
  %next = add i32 %at, 1
  %isLast = icmp eq i32 %next, 5
  br i1 %isLast, label %outer.again, label %inner

after:                                            ; preds = %outer
  store i32 %sum, ptr @out, align 4
  ret void
}
