; The list of a small member is aligned as the member is, not as the record was.
%Row = type { half, <3 x float> }
@in = external constant i32
@out = external global half

define void @main() {
  %list = alloca [9 x %Row], align 16
  %i = load i32, ptr @in
  %p = getelementptr [9 x %Row], ptr %list, i32 0, i32 %i
  store half 1.0, ptr %p, align 16
  %value = load half, ptr %p, align 16
  store half %value, ptr @out
  ret void
}
