; shader
@in = external constant i32
@a = external global i32
@b = external global i32

define void @main() {
  %i = load i32, ptr @in, align 4
  %1 = icmp eq i32 %i, 1
  %2 = select i1 %1, ptr @b, ptr @a
  store i32 7, ptr %2, align 4
  ret void
}
