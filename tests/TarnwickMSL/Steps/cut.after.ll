; entry name=shade symbol=shade early_tests=1
; entry name=other symbol=other
; shader name=shade early_tests=1
@table = internal constant [2 x i32] [i32 3, i32 5]

define internal i32 @shade() {
  %value = load i32, ptr @table, align 4
  ret i32 %value
}
