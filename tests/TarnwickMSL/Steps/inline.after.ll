; entry name=shade symbol=shade
define i32 @shade(i32 %x) {
  %sum.i = shl i32 %x, 1
  %sum.i1 = shl i32 %sum.i, 1
  ret i32 %sum.i1
}
