; shader name=shade
@in = external constant float
@out = external global float

define void @main() {
entry:
  %x = load float, ptr @in, align 4
  %isLow = fcmp olt float %x, 0.000000e+00
  %y = fmul float %x, %x
  %isFar = fcmp ogt float %y, 4.000000e+00
  %z = fadd float %x, 3.000000e+00
  %isNear = fcmp olt float %z, 5.000000e+00
  %0 = select i1 %isLow, i1 %isFar, i1 false
  %1 = select i1 %0, float %y, float %z
  %twice = fadd float %1, %1
  %half = fmul float %y, 5.000000e-01
  %2 = xor i1 %isLow, true
  %3 = select i1 %2, i1 %isNear, i1 false
  %4 = select i1 %0, i1 true, i1 %3
  %5 = select i1 %4, float %twice, float %half
  %6 = xor i1 %isNear, true
  %7 = select i1 %2, i1 %6, i1 false
  %8 = select i1 %7, float %z, float %5
  store float %8, ptr @out, align 4
  ret void
}
