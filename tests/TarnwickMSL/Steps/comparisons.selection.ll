; Code generation's own pattern for a vector ?: keeps its mask; its condition has lanes of 0 and 1.
define <2 x i32> @f(<2 x i32> %a, <2 x i32> %b, <2 x i32> %condition) {
  %sign = icmp slt <2 x i32> %condition, zeroinitializer
  %mask = sext <2 x i1> %sign to <2 x i32>
  %other = xor <2 x i32> %mask, <i32 -1, i32 -1>
  %x = and <2 x i32> %a, %mask
  %y = and <2 x i32> %b, %other
  %either = or <2 x i32> %x, %y
  ret <2 x i32> %either
}
