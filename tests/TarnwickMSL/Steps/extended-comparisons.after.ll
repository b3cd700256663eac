; shader
@in = external constant <4 x i32>
@wide = external constant <2 x i64>
@out = external global <2 x i32>

define void @main() {
  %all = load <4 x i32>, ptr @in, align 16
  %a = extractelement <4 x i32> %all, i64 0
  %b = extractelement <4 x i32> %all, i64 1
  %long.a = sext i32 %a to i64
  %long.b = sext i32 %b to i64
  %first = insertelement <2 x i64> poison, i64 %long.a, i64 0
  %both = insertelement <2 x i64> %first, i64 %long.b, i64 1
  %1 = xor <2 x i64> %both, <i64 -9223372036854775808, i64 -9223372036854775808>
  %2 = icmp ult <2 x i64> %1, <i64 -9223372036854775710, i64 -9223372036854775740>
  %one = zext <2 x i1> %2 to <2 x i32>
  store <2 x i32> %one, ptr @out, align 8
  %given = load <2 x i64>, ptr @wide, align 16
  %are.greater = icmp sgt <2 x i64> %given, <i64 98, i64 68>
  %two = zext <2 x i1> %are.greater to <2 x i32>
  store <2 x i32> %two, ptr @out, align 8
  %is.negative = icmp slt i32 %a, 0
  %c = extractelement <2 x i64> %given, i64 1
  %chosen = select i1 %is.negative, i64 %long.a, i64 %c
  %3 = xor i64 %chosen, -9223372036854775808
  %4 = xor i64 %c, -9223372036854775808
  %5 = icmp uge i64 %4, %3
  %is.same = icmp eq i64 %long.b, 5
  %each = or i1 %5, %is.same
  %three = select i1 %each, <2 x i32> zeroinitializer, <2 x i32> %one
  store <2 x i32> %three, ptr @out, align 8
  ret void
}
