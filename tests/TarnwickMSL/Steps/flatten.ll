; `a || b(x)`: the second test joins the first, and the sides become a selection. The branch on a
; uniform stays.
; shader name=shade
; variable kind=uniform_buffer global=params index=1
@in = external constant float
@params = external constant i32
@out = external global float

define void @main() {
entry:
  %x = load float, ptr @in
  %isLow = fcmp olt float %x, 0.0
  br i1 %isLow, label %low, label %next

next:
  %y = fmul float %x, %x
  %isFar = fcmp ogt float %y, 4.0
  br i1 %isFar, label %low, label %high

low:
  %l = phi float [ %x, %entry ], [ %y, %next ]
  %more = fadd float %l, 1.0
  br label %then

high:
  %less = fsub float %y, 1.0
  br label %then

then:
  %v = phi float [ %more, %low ], [ %less, %high ]
  %mode = load i32, ptr @params
  %isOn = icmp eq i32 %mode, 1
  br i1 %isOn, label %on, label %end

on:
  %twice = fadd float %v, %v
  br label %end

end:
  %result = phi float [ %v, %then ], [ %twice, %on ]
  store float %result, ptr @out
  ret void
}
