; shader name=shade
@in = external constant float
@out = external global float

define void @main() {
entry:
  %x = load float, ptr @in, align 4
  br label %integers

integers:                                         ; preds = %body, %entry
  %counter = phi i32 [ -1, %entry ], [ %2, %body ]
  %sum = phi float [ 0.000000e+00, %entry ], [ %more, %body ]
  %0 = sitofp i32 %counter to float
  %goesOn = fcmp ole float %0, 2.000000e+00
  %1 = icmp slt i32 %counter, 3
  br i1 %1, label %body, label %tenths

body:                                             ; preds = %integers
  %term = fmul float %x, %0
  %more = fadd float %sum, %term
  %nextI = fadd float %0, 1.000000e+00
  %2 = add nsw i32 %counter, 1
  br label %integers

tenths:                                           ; preds = %tenths, %integers
  %counter1 = phi i32 [ 0, %integers ], [ %3, %tenths ]
  %t = phi float [ 0.000000e+00, %integers ], [ %nextT, %tenths ]
  %product = phi float [ %sum, %integers ], [ %nextProduct, %tenths ]
  %nextProduct = fmul float %product, %t
  %nextT = fadd float %t, 0x3FB99999A0000000
  %isDone = fcmp oge float %nextT, 1.000000e+00
  %3 = add nsw i32 %counter1, 1
  %4 = icmp sge i32 %counter1, 9
  br i1 %4, label %end, label %tenths

end:                                              ; preds = %tenths
  store float %nextProduct, ptr @out, align 4
  ret void
}
