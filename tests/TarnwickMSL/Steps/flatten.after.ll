; shader name=shade
; variable kind=uniform_buffer global=params index=1
@in = external constant float
@params = external constant i32
@out = external global float

define void @main() {
entry:
  %x = load float, ptr @in, align 4
  %isLow = fcmp olt float %x, 0.000000e+00
  %y = fmul float %x, %x
  %isFar = fcmp ogt float %y, 4.000000e+00
  %0 = select i1 %isLow, float %x, float %y
  %1 = select i1 %isLow, i1 true, i1 %isFar
  %more = fadd float %0, 1.000000e+00
  %less = fsub float %y, 1.000000e+00
  %2 = select i1 %1, float %more, float %less
  %mode = load i32, ptr @params, align 4
  %isOn = icmp eq i32 %mode, 1
  br i1 %isOn, label %on, label %end

on:                                               ; preds = %entry
  %twice = fadd float %2, %2
  br label %end

end:                                              ; preds = %on, %entry
  %result = phi float [ %2, %entry ], [ %twice, %on ]
  store float %result, ptr @out, align 4
  ret void
}
