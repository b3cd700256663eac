; A loop with two exits to one block. The step to the address does not change in it, but stays beside the store.
@in = external constant i32
@table = external global [64 x i32]

define void @main() {
entry:
  %at = load i32, ptr @in
  br label %round

round:
  %i = phi i32 [ 0, %entry ], [ %next, %last ]
  %isEnd = icmp eq i32 %i, %at
  br i1 %isEnd, label %end, label %last

last:
  %place = getelementptr [64 x i32], ptr @table, i32 0, i32 %at
  store i32 %i, ptr %place
  %next = add i32 %i, 1
  %isDone = icmp eq i32 %next, 8
  br i1 %isDone, label %end, label %round

end:
  ret void
}
