; Two ways share the block %same: the region to %end becomes straight code, and conditions of the
; ways choose the values.
; shader name=shade
@in = external constant float
@out = external global float

define void @main() {
entry:
  %x = load float, ptr @in
  %isLow = fcmp olt float %x, 0.0
  br i1 %isLow, label %low, label %high

low:
  %y = fmul float %x, %x
  %isFar = fcmp ogt float %y, 4.0
  br i1 %isFar, label %same, label %near

high:
  %z = fadd float %x, 3.0
  %isNear = fcmp olt float %z, 5.0
  br i1 %isNear, label %same, label %end

same:
  %s = phi float [ %y, %low ], [ %z, %high ]
  %twice = fadd float %s, %s
  br label %end

near:
  %half = fmul float %y, 0.5
  br label %end

end:
  %result = phi float [ %twice, %same ], [ %half, %near ], [ %z, %high ]
  store float %result, ptr @out
  ret void
}
