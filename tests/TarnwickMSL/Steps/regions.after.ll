; shader
@in = external constant i32
@out = external global i32

define void @main() {
entry:
  %i = load i32, ptr @in, align 4
  %isSmall = icmp ult i32 %i, 4
  %isSmall.inv = xor i1 %isSmall, true
  br i1 %isSmall, label %small, label %Flow

small:                                            ; preds = %entry
  %isZero = icmp ne i32 %i, 0
  br label %Flow

Flow:                                             ; preds = %small, %entry
  %0 = phi i1 [ %isZero, %small ], [ %isSmall.inv, %entry ]
  br i1 %0, label %other, label %end

other:                                            ; preds = %Flow
  store i32 1, ptr @out, align 4
  br label %end

end:                                              ; preds = %other, %Flow
  ret void
}
