; shader
@in = external constant i32
@out = external global half

define void @main() {
  %list1 = alloca [9 x half], align 2
  %i = load i32, ptr @in, align 4
  %1 = getelementptr [9 x half], ptr %list1, i32 0, i32 %i
  store half 0xH3C00, ptr %1, align 2
  store half 0xH3C00, ptr @out, align 2
  ret void
}
