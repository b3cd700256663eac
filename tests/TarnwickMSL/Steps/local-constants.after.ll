; entry name=shade symbol=shade
@more = internal global i32 0, section "function_constant"
@table = internal global [2 x i32] zeroinitializer, section "function_constant"

define i32 @shade(i32 %i) {
  %more1 = alloca i32, align 4
  %table = alloca [2 x i32], align 4
  call void @llvm.memset.p0.i64(ptr align 4 %table, i8 0, i64 8, i1 false)
  store i32 0, ptr %more1, align 4
  %value = call i32 @msl.function_constant.i32(i32 256)
  store i32 %value, ptr %more1, align 4
  %1 = getelementptr inbounds [2 x i32], ptr %table, i32 0, i32 1
  store i32 %value, ptr %1, align 4
  %place = getelementptr [2 x i32], ptr %table, i32 0, i32 %i
  %one = load i32, ptr %place, align 4
  %more = load i32, ptr %more1, align 4
  %sum = add i32 %one, %more
  ret i32 %sum
}

declare i32 @msl.function_constant.i32(i32)

; Function Attrs: nocallback nofree nounwind willreturn memory(argmem: write)
declare void @llvm.memset.p0.i64(ptr nocapture writeonly, i8, i64, i1 immarg) #0

attributes #0 = { nocallback nofree nounwind willreturn memory(argmem: write) }
