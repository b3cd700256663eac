@in = external constant i32
@out = external global i1

define void @main() {
  %all = alloca [4 x i32]
  %i = load i32, ptr @in
  %place = getelementptr [4 x i32], ptr %all, i32 0, i32 %i
  %isFirst = icmp eq ptr %place, %all
  store i1 %isFirst, ptr @out
  ret void
}
