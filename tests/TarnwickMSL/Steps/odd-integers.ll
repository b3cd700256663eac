; The bits above the odd width stay zero.
@in = external constant i32
@out = external global i32

define void @main() {
  %x = load i32, ptr @in
  %five = trunc i32 %x to i5
  %half = ashr i5 %five, 1
  %y = sext i5 %half to i32
  store i32 %y, ptr @out
  ret void
}
