; Clang widens the lanes of a comparison by sign.
define <2 x i32> @f(<2 x i32> %a, <2 x i32> %b) {
  %less = icmp slt <2 x i32> %a, %b
  %lanes = sext <2 x i1> %less to <2 x i32>
  ret <2 x i32> %lanes
}
