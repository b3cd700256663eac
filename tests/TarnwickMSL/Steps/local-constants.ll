; entry name=shade symbol=shade stage=fragment
@more = internal global i32 0, section "function_constant"
@table = internal global [2 x i32] zeroinitializer, section "function_constant"

define i32 @shade(i32 %i) {
  %value = call i32 @msl.function_constant.i32(i32 256)
  store i32 %value, ptr @more
  store i32 %value, ptr getelementptr inbounds ([2 x i32], ptr @table, i32 0, i32 1)
  %place = getelementptr [2 x i32], ptr @table, i32 0, i32 %i
  %one = load i32, ptr %place
  %more = load i32, ptr @more
  %sum = add i32 %one, %more
  ret i32 %sum
}

declare i32 @msl.function_constant.i32(i32)
