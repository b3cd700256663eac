@in = external constant i32
@a = external global i32
@b = external global i32

define void @main() {
  %both = alloca [2 x ptr]
  %second = getelementptr [2 x ptr], ptr %both, i32 0, i32 1
  store ptr @a, ptr %both
  store ptr @b, ptr %second
  %i = load i32, ptr @in
  %place = getelementptr [2 x ptr], ptr %both, i32 0, i32 %i
  %chosen = load ptr, ptr %place
  store i32 7, ptr %chosen
  ret void
}
