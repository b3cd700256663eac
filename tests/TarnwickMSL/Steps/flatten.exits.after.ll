; shader name=shade
@in = external constant i32
@out = external global i32

define void @main() {
entry:
  %column = load i32, ptr @in, align 4
  br label %loop

loop:                                             ; preds = %loop, %entry
  %word = phi i32 [ 0, %entry ], [ %nextWord, %loop ]
  %at = phi i32 [ 5, %entry ], [ %nextAt, %loop ]
  %size = mul i32 %word, 3
  %isBefore = icmp sgt i32 %at, %column
  %end = add i32 %at, %size
  %isInside = icmp sgt i32 %end, %column
  %place = sub i32 %column, %at
  %0 = select i1 %isBefore, i32 -1, i32 %place
  %1 = select i1 %isBefore, i1 true, i1 %isInside
  %nextAt = add i32 %end, 1
  %nextWord = add i32 %word, 1
  br i1 %1, label %after, label %loop

after:                                            ; preds = %loop
  store i32 %0, ptr @out, align 4
  ret void
}
