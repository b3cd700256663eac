; Two exits that meet behind a short block become one, and the rest of the round runs in any case.
; shader name=shade
@in = external constant i32
@out = external global i32

define void @main() {
entry:
  %column = load i32, ptr @in
  br label %loop

loop:
  %word = phi i32 [ 0, %entry ], [ %nextWord, %rest ]
  %at = phi i32 [ 5, %entry ], [ %nextAt, %rest ]
  %size = mul i32 %word, 3
  %isBefore = icmp sgt i32 %at, %column
  br i1 %isBefore, label %missed, label %look

look:
  %end = add i32 %at, %size
  %isInside = icmp sgt i32 %end, %column
  br i1 %isInside, label %found, label %rest

rest:
  %nextAt = add i32 %end, 1
  %nextWord = add i32 %word, 1
  br label %loop

found:
  %place = sub i32 %column, %at
  br label %after

missed:
  br label %after

after:
  %result = phi i32 [ %place, %found ], [ -1, %missed ]
  store i32 %result, ptr @out
  ret void
}
