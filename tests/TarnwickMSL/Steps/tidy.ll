; dead code
@in = external constant i32
@out = external global i32

define void @main() {
  %unused = select i1 true, ptr @in, ptr @out
  %x = load i32, ptr @in
  %y = load i32, ptr @in
  %sum = add i32 %x, %y
  store i32 %sum, ptr @out
  ret void
}
