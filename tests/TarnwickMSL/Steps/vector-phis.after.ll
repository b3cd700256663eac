; shader name=shade
; merge header=%entry at=%end
@in = external constant <2 x i32>
@out = external global <2 x i32>

define void @main() {
entry:
  %both = load <2 x i32>, ptr @in, align 8
  %0 = extractelement <2 x i32> %both, i64 1
  %1 = extractelement <2 x i32> %both, i64 0
  %x = extractelement <2 x i32> %both, i32 0
  %isZero = icmp eq i32 %x, 0
  br i1 %isZero, label %zero, label %end

zero:                                             ; preds = %entry
  br label %end

end:                                              ; preds = %zero, %entry
  %2 = phi i32 [ 1, %zero ], [ %1, %entry ]
  %3 = phi i32 [ 2, %zero ], [ %0, %entry ]
  %4 = phi i32 [ 4, %zero ], [ %1, %entry ]
  %5 = phi i32 [ 5, %zero ], [ %0, %entry ]
  %6 = insertelement <2 x i32> poison, i32 %4, i64 0
  %7 = insertelement <2 x i32> %6, i32 %5, i64 1
  %8 = insertelement <2 x i32> poison, i32 %2, i64 0
  %9 = insertelement <2 x i32> %8, i32 %3, i64 1
  store <2 x i32> %9, ptr @out, align 8
  store <2 x i32> %7, ptr @out, align 8
  ret void
}
