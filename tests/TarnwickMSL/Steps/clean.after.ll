; shader
@in = external constant i32
@out = external global i32

define void @main() {
  %x = load i32, ptr @in, align 4
  store i32 %x, ptr @out, align 4
  ret void
}
