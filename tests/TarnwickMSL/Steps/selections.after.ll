; shader
; merge header=%entry at=%end
; merge header=%small at=%end.merge
@in = external constant i32
@out = external global i32

define void @main() {
entry:
  %i = load i32, ptr @in, align 4
  %isSmall = icmp ult i32 %i, 4
  br i1 %isSmall, label %small, label %end

small:                                            ; preds = %entry
  %isZero = icmp eq i32 %i, 0
  br i1 %isZero, label %zero, label %end.merge

zero:                                             ; preds = %small
  store i32 1, ptr @out, align 4
  br label %end.merge

end.merge:                                        ; preds = %small, %zero
  br label %end

end:                                              ; preds = %end.merge, %entry
  ret void
}
