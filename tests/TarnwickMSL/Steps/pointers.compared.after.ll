; dead code
; shader
@in = external constant i32
@out = external global i1

define void @main() {
  %all = alloca [4 x i32], align 4
  %i = load i32, ptr @in, align 4
  %1 = mul i32 %i, 1
  %2 = add i32 0, %1
  %3 = add i32 0, %2
  %place = getelementptr [4 x i32], ptr %all, i32 0, i32 %i
  %4 = icmp eq i32 %3, 0
  %5 = and i1 %4, true
  store i1 %5, ptr @out, align 1
  ret void
}
