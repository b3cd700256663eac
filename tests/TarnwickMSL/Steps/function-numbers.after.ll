; shader
@in = external constant i32
@out = external global i32

define void @main() {
entry:
  %own = alloca [2 x i64], align 8
  store i32 1, ptr %own, align 4
  %i = load i32, ptr @in, align 4
  %isSecond = icmp eq i32 %i, 1
  %0 = select i1 %isSecond, i64 2, i64 1
  %f = select i1 %isSecond, ptr inttoptr (i64 2 to ptr), ptr inttoptr (i64 1 to ptr)
  %number = trunc i64 %0 to i32
  %place = getelementptr [2 x ptr], ptr %own, i32 0, i32 %i
  %kept = load i32, ptr %place, align 4
  %sum = add i32 %number, %kept
  store i32 %sum, ptr @out, align 4
  ret void
}
