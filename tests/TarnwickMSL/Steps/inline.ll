; entry name=shade symbol=shade stage=fragment
define internal i32 @twice(i32 %x) {
  %place = alloca i32
  store i32 %x, ptr %place
  %value = load i32, ptr %place
  %sum = add i32 %value, %value
  ret i32 %sum
}

define i32 @shade(i32 %x) {
  %a = call i32 @twice(i32 %x)
  %b = call i32 @twice(i32 %a)
  ret i32 %b
}
