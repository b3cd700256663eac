@in = external constant i32
@out = external global i32

define void @main() {
  %place = alloca { i32, i32 }
  %x = load i32, ptr @in
  %second = getelementptr { i32, i32 }, ptr %place, i32 0, i32 1
  store i32 %x, ptr %second
  %y = load i32, ptr %second
  %z = add i32 %y, 0
  store i32 %z, ptr @out
  ret void
}
