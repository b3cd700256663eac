; shader
@in = external constant [4 x i32]
@out = external global [3 x float]
@table = internal constant [3 x float] [float 1.000000e+00, float 4.000000e+00, float 9.000000e+00]

define void @main() {
  %long = alloca [9 x float], align 4
  %i = load i32, ptr @in, align 4
  %j = load i32, ptr getelementptr inbounds (i8, ptr @in, i32 4), align 4
  %before = add i32 %i, -1
  %1 = icmp eq i32 %before, 0
  %2 = icmp eq i32 %j, 0
  %3 = and i1 %1, %2
  %4 = icmp uge i32 %j, 1
  %5 = and i1 %1, %4
  %6 = icmp eq i32 %before, 1
  %7 = and i1 %6, %2
  %8 = and i1 %6, %4
  %9 = icmp uge i32 %before, 2
  %10 = and i1 %9, %2
  %11 = select i1 %10, float 2.000000e+00, float 0.000000e+00
  %12 = and i1 %9, %4
  %13 = select i1 %12, float 2.000000e+00, float 0.000000e+00
  %14 = icmp ult i32 %i, 1
  %15 = select i1 %14, float %11, float %13
  store float %15, ptr @out, align 4
  %16 = icmp ult i32 %i, 2
  %17 = select i1 %14, float 1.000000e+00, float 4.000000e+00
  %18 = select i1 %16, float %17, float 9.000000e+00
  store float %18, ptr getelementptr inbounds (i8, ptr @out, i32 4), align 4
  %far = getelementptr [9 x float], ptr %long, i32 0, i32 %i
  store float %15, ptr %far, align 4
  %near = getelementptr [9 x float], ptr %long, i32 0, i32 %j
  %c = load float, ptr %near, align 4
  store float %c, ptr getelementptr inbounds (i8, ptr @out, i32 8), align 4
  ret void
}
