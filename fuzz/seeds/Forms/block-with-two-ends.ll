; shader name=shade
; merge header=%entry at=%end
@in = external constant <2 x i32>
@out = external global <2 x i32>

define void @main() {
entry:
  %both = load <2 x i32>, ptr @in
  %x = extractelement <2 x i32> %both, i32 0
  %isZero = icmp eq i32 %x, 0
  br i1 %isZero, label %zero, label %end

zero:
  br label %end

zero:
  br label %end

end:
  %result = phi <2 x i32> [ <i32 1, i32 2>, %zero ], [ %both, %entry ]
  %cast = phi <2 x i32> [ bitcast (<1 x i64> <i64 21474836484> to <2 x i32>), %zero ], [ %both, %entry ]
  store <2 x i32> %result, ptr @out
  store <2 x i32> %cast, ptr @out
  ret void
}
