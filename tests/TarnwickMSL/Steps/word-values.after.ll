; shader
; lacks int8=1 int16=1 int64=1 half=1
@in = external constant i32
@out = external global [3 x i32]

define void @main() {
entry:
  %x = load i32, ptr @in, align 4
  %0 = ashr i32 %x, 31
  br label %round

round:                                            ; preds = %round, %entry
  %1 = phi i32 [ 5, %entry ], [ %3, %round ]
  %2 = phi i32 [ 0, %entry ], [ %7, %round ]
  %i = phi i32 [ 0, %entry ], [ %after, %round ]
  %3 = add i32 %1, %x
  %4 = icmp ult i32 %3, %1
  %5 = zext i1 %4 to i32
  %6 = add i32 %2, %0
  %7 = add i32 %6, %5
  %after = add i32 %i, 1
  %isMore = icmp ult i32 %after, %x
  br i1 %isMore, label %round, label %end

end:                                              ; preds = %round
  store i32 %7, ptr @out, align 4
  %8 = shl i32 %x, 24
  %9 = ashr i32 %8, 24
  %10 = icmp slt i32 %9, 9
  %flag = zext i1 %10 to i32
  store i32 %flag, ptr getelementptr (i8, ptr @out, i32 4), align 4
  %11 = and i32 %x, 65535
  %12 = and i32 %11, 32767
  %13 = shl i32 %12, 13
  %14 = add i32 %13, 939524096
  %15 = or i32 %13, 2139095040
  %16 = sitofp i32 %12 to float
  %17 = fmul float %16, 0x3E70000000000000
  %18 = bitcast float %17 to i32
  %19 = icmp ugt i32 %12, 31743
  %20 = select i1 %19, i32 %15, i32 %14
  %21 = icmp ugt i32 %12, 1023
  %22 = select i1 %21, i32 %20, i32 %18
  %23 = and i32 %11, 32768
  %24 = shl i32 %23, 16
  %25 = or i32 %22, %24
  %26 = bitcast i32 %25 to float
  %27 = fmul float %26, 3.000000e+00
  %28 = bitcast float %27 to i32
  %29 = and i32 %28, -2147483648
  %30 = and i32 %28, 2147483647
  %31 = lshr i32 %30, 13
  %32 = and i32 %31, 1
  %33 = add i32 %30, 4095
  %34 = add i32 %33, %32
  %35 = and i32 %34, -8192
  %36 = icmp ugt i32 %35, 1199562752
  %37 = select i1 %36, i32 2139095040, i32 %35
  %38 = icmp ugt i32 %30, 2139095040
  %39 = select i1 %38, i32 %30, i32 %37
  %40 = bitcast i32 %30 to float
  %41 = fmul float %40, 0x4170000000000000
  %42 = call float @llvm.roundeven.f32(float %41)
  %43 = fmul float %42, 0x3E70000000000000
  %44 = bitcast float %43 to i32
  %45 = icmp ugt i32 %30, 947912703
  %46 = select i1 %45, i32 %39, i32 %44
  %47 = or i32 %46, %29
  %48 = bitcast i32 %47 to float
  %bits = bitcast float %48 to i32
  store i32 %bits, ptr getelementptr (i8, ptr @out, i32 8), align 4
  ret void
}

; Function Attrs: nocallback nofree nosync nounwind speculatable willreturn memory(none)
declare float @llvm.roundeven.f32(float) #0

attributes #0 = { nocallback nofree nosync nounwind speculatable willreturn memory(none) }
