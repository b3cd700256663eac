; shader
@in = external constant i32
@out = external global i32
@table = internal constant [4 x i32] [i32 3, i32 5, i32 5, i32 3]

define void @main() {
  %i = load i32, ptr @in, align 4
  %1 = and i32 %i, 31
  %2 = lshr i32 6, %1
  %3 = and i32 %2, 1
  %4 = icmp ne i32 %3, 0
  %5 = select i1 %4, i32 5, i32 3
  store i32 %5, ptr @out, align 4
  ret void
}
