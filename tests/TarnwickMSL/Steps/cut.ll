; entry name=shade symbol=shade stage=fragment early_tests=1
; entry name=other symbol=other stage=fragment
@table = internal constant [2 x i32] [i32 3, i32 5]

define i32 @shade() {
  %value = load i32, ptr @table
  ret i32 %value
}

define i32 @other() {
  ret i32 2
}
