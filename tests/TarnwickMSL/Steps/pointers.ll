; A load reads all candidates, a store goes to the one that is meant.
@in = external constant i32
@a = external global [4 x i32]
@b = external global [4 x i32]

define void @main() {
  %i = load i32, ptr @in
  %isA = icmp eq i32 %i, 1
  %inB = getelementptr [4 x i32], ptr @b, i32 0, i32 %i
  %chosen = select i1 %isA, ptr @a, ptr %inB
  %value = load i32, ptr %chosen
  store i32 %value, ptr %chosen
  ret void
}
