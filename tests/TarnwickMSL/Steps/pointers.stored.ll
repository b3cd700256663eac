; An array of pointers to two locals by an index of run time: numbers of the locals and offsets.
@in = external constant i32

define void @main() {
  %a = alloca [4 x float]
  %b = alloca float
  %list = alloca [40 x ptr]
  %i = load i32, ptr @in
  %first = getelementptr [40 x ptr], ptr %list, i32 0, i32 %i
  %third = getelementptr [4 x float], ptr %a, i32 0, i32 3
  store ptr %third, ptr %first
  %j = add i32 %i, 1
  %second = getelementptr [40 x ptr], ptr %list, i32 0, i32 %j
  store ptr %b, ptr %second
  %chosen = load ptr, ptr %first
  store float 1.0, ptr %chosen
  ret void
}
