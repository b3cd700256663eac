; The loop reads the next of four elements in every round.
@in = external constant i32
@out = external global i32
@table = internal constant [4 x i32] [i32 3, i32 5, i32 7, i32 11]

define void @main() {
entry:
  %n = load i32, ptr @in
  br label %loop

loop:
  %i = phi i32 [ 0, %entry ], [ %next, %loop ]
  %sum = phi i32 [ 0, %entry ], [ %more, %loop ]
  %place = getelementptr [4 x i32], ptr @table, i32 0, i32 %i
  %value = load i32, ptr %place
  %more = add i32 %sum, %value
  %next = add i32 %i, 1
  %goesOn = icmp ult i32 %next, %n
  br i1 %goesOn, label %loop, label %end

end:
  store i32 %more, ptr @out
  ret void
}
