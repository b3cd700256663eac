; shader
@in = external constant i32
@out = external global i32

define void @main() {
  %x = load i32, ptr @in, align 4
  %sum = add i32 %x, %x
  store i32 %sum, ptr @out, align 4
  ret void
}
