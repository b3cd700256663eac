; The array of the record and the table become choices of values. The long array stays in memory.
%Record = type { i32, [3 x [2 x float]] }
@in = external constant [4 x i32]
@out = external global [3 x float]
@table = internal constant [3 x float] [float 1.0, float 4.0, float 9.0]

define void @main() {
  %record = alloca %Record
  %long = alloca [9 x float]
  %i = load i32, ptr @in
  %j.place = getelementptr [4 x i32], ptr @in, i32 0, i32 1
  %j = load i32, ptr %j.place
  store %Record zeroinitializer, ptr %record
  %before = add i32 %i, -1
  %stored = getelementptr %Record, ptr %record, i32 0, i32 1, i32 %before, i32 %j
  store float 2.0, ptr %stored
  %loaded = getelementptr %Record, ptr %record, i32 0, i32 1, i32 2, i32 %i
  %a = load float, ptr %loaded
  store float %a, ptr @out
  %place = getelementptr [3 x float], ptr @table, i32 0, i32 %i
  %b = load float, ptr %place
  %out.1 = getelementptr [3 x float], ptr @out, i32 0, i32 1
  store float %b, ptr %out.1
  %far = getelementptr [9 x float], ptr %long, i32 0, i32 %i
  store float %a, ptr %far
  %near = getelementptr [9 x float], ptr %long, i32 0, i32 %j
  %c = load float, ptr %near
  %out.2 = getelementptr [3 x float], ptr @out, i32 0, i32 2
  store float %c, ptr %out.2
  ret void
}
