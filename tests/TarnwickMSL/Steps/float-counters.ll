; Four integers, counted in floats; and steps of a tenth, which are counted apart.
; shader name=shade
@in = external constant float
@out = external global float

define void @main() {
entry:
  %x = load float, ptr @in
  br label %integers

integers:
  %i = phi float [ -1.0, %entry ], [ %nextI, %body ]
  %sum = phi float [ 0.0, %entry ], [ %more, %body ]
  %goesOn = fcmp ole float %i, 2.0
  br i1 %goesOn, label %body, label %tenths

body:
  %term = fmul float %x, %i
  %more = fadd float %sum, %term
  %nextI = fadd float %i, 1.0
  br label %integers

tenths:
  %t = phi float [ 0.0, %integers ], [ %nextT, %tenths ]
  %product = phi float [ %sum, %integers ], [ %nextProduct, %tenths ]
  %nextProduct = fmul float %product, %t
  %nextT = fadd float %t, 0x3FB99999A0000000
  %isDone = fcmp oge float %nextT, 1.0
  br i1 %isDone, label %end, label %tenths

end:
  store float %nextProduct, ptr @out
  ret void
}
