; shader
@in = external constant i32
@out = external global i32
@bytes = external global [4 x i8]

define void @main() {
  %x = load i32, ptr @in, align 4
  %1 = trunc i32 %x to i8
  %2 = and i8 %1, 31
  %3 = shl i8 %2, 3
  %4 = ashr i8 %3, 3
  %5 = ashr i8 %4, 1
  %6 = and i8 %5, 31
  %7 = shl i8 %6, 3
  %8 = ashr i8 %7, 3
  %9 = sext i8 %8 to i32
  store i32 %9, ptr @out, align 4
  %10 = call i8 @llvm.bitreverse.i8(i8 %2)
  %11 = lshr i8 %10, 3
  %12 = or i8 %2, 32
  %13 = call i8 @llvm.cttz.i8(i8 %12, i1 false)
  %14 = call i8 @llvm.ctlz.i8(i8 %2, i1 false)
  %15 = sub i8 %14, 3
  %16 = shl i8 %13, 3
  %17 = ashr i8 %16, 3
  %18 = shl i8 %15, 3
  %19 = ashr i8 %18, 3
  %20 = call i8 @llvm.smax.i8(i8 %17, i8 %19)
  %21 = and i8 %20, 31
  %22 = shl i8 %11, 3
  %23 = lshr i8 %21, 2
  %24 = or i8 %22, %23
  %25 = and i8 %24, 31
  %26 = zext i8 %25 to i32
  store i32 %26, ptr @out, align 4
  %isSmall = icmp ult i32 %x, 7
  %small = zext i1 %isSmall to i32
  store i32 %small, ptr @out, align 4
  %27 = load i16, ptr @bytes, align 4
  %28 = zext i16 %27 to i32
  %29 = shl i32 %28, 0
  %30 = or i32 0, %29
  %31 = load i8, ptr getelementptr inbounds (i8, ptr @bytes, i32 2), align 2
  %32 = zext i8 %31 to i32
  %33 = shl i32 %32, 16
  %34 = or i32 %30, %33
  %35 = xor i32 %34, 5
  %36 = and i32 %35, 16777215
  %37 = lshr i32 %36, 0
  %38 = trunc i32 %37 to i16
  store i16 %38, ptr @bytes, align 4
  %39 = lshr i32 %36, 16
  %40 = trunc i32 %39 to i8
  store i8 %40, ptr getelementptr inbounds (i8, ptr @bytes, i32 2), align 2
  ret void
}

; Function Attrs: nocallback nofree nosync nounwind speculatable willreturn memory(none)
declare i1 @llvm.bitreverse.i1(i1) #0

; Function Attrs: nocallback nofree nosync nounwind speculatable willreturn memory(none)
declare i5 @llvm.bitreverse.i5(i5) #0

; Function Attrs: nocallback nofree nosync nounwind speculatable willreturn memory(none)
declare i5 @llvm.ctlz.i5(i5, i1 immarg) #0

; Function Attrs: nocallback nofree nosync nounwind speculatable willreturn memory(none)
declare i5 @llvm.cttz.i5(i5, i1 immarg) #0

; Function Attrs: nocallback nofree nosync nounwind speculatable willreturn memory(none)
declare i5 @llvm.fshl.i5(i5, i5, i5) #0

; Function Attrs: nocallback nofree nosync nounwind speculatable willreturn memory(none)
declare i5 @llvm.smax.i5(i5, i5) #0

; Function Attrs: nocallback nofree nosync nounwind speculatable willreturn memory(none)
declare i8 @llvm.bitreverse.i8(i8) #0

; Function Attrs: nocallback nofree nosync nounwind speculatable willreturn memory(none)
declare i8 @llvm.cttz.i8(i8, i1 immarg) #0

; Function Attrs: nocallback nofree nosync nounwind speculatable willreturn memory(none)
declare i8 @llvm.ctlz.i8(i8, i1 immarg) #0

; Function Attrs: nocallback nofree nosync nounwind speculatable willreturn memory(none)
declare i8 @llvm.smax.i8(i8, i8) #0

attributes #0 = { nocallback nofree nosync nounwind speculatable willreturn memory(none) }
