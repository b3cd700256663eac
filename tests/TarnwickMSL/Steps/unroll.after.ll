; shader
@in = external constant i32
@out = external global i32

define void @main() {
entry:
  %x = load i32, ptr @in, align 4
  %factor.1 = add i32 %x, 1
  %more.1 = mul i32 %x, %factor.1
  %factor.2 = add i32 %x, 2
  %more.2 = mul i32 %more.1, %factor.2
  store i32 %more.2, ptr @out, align 4
  ret void
}
