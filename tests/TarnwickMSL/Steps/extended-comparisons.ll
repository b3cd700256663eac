; Signed comparisons of 64 bits with a value that may be a sign-extended one of 32 bits are unsigned;
; those of other values, of fewer bits and for equality stay.
@in = external constant <4 x i32>
@wide = external constant <2 x i64>
@out = external global <2 x i32>

define void @main() {
  %all = load <4 x i32>, ptr @in
  %a = extractelement <4 x i32> %all, i64 0
  %b = extractelement <4 x i32> %all, i64 1
  %long.a = sext i32 %a to i64
  %long.b = sext i32 %b to i64
  %first = insertelement <2 x i64> poison, i64 %long.a, i64 0
  %both = insertelement <2 x i64> %first, i64 %long.b, i64 1
  %are.less = icmp slt <2 x i64> %both, <i64 98, i64 68>
  %one = zext <2 x i1> %are.less to <2 x i32>
  store <2 x i32> %one, ptr @out
  %given = load <2 x i64>, ptr @wide
  %are.greater = icmp sgt <2 x i64> %given, <i64 98, i64 68>
  %two = zext <2 x i1> %are.greater to <2 x i32>
  store <2 x i32> %two, ptr @out
  %is.negative = icmp slt i32 %a, 0
  %c = extractelement <2 x i64> %given, i64 1
  %chosen = select i1 %is.negative, i64 %long.a, i64 %c
  %is.most = icmp sge i64 %c, %chosen
  %is.same = icmp eq i64 %long.b, 5
  %each = or i1 %is.most, %is.same
  %three = select i1 %each, <2 x i32> zeroinitializer, <2 x i32> %one
  store <2 x i32> %three, ptr @out
  ret void
}
