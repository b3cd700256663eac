; shader
; lacks int8=1 int16=1 int64=1 half=1
; variable kind=storage_buffer global=msl.buffer.0 element_bytes=4
@msl.buffer.0 = external global [0 x i32]
@record = external global <{ [2 x i32], [2 x i32], float, i32 }>
@table = internal constant [2 x i32] [i32 1684234849, i32 26213]
@out = external global i32

define void @main() {
  %i = load i32, ptr @out, align 4
  %1 = load i32, ptr getelementptr (i8, ptr @record, i32 8), align 4
  %2 = load i32, ptr getelementptr inbounds (i8, ptr @record, i32 12), align 4
  %3 = zext i32 %1 to i64
  %4 = zext i32 %2 to i64
  %5 = shl i64 %4, 32
  %6 = or i64 %3, %5
  %7 = load i32, ptr getelementptr (i8, ptr @record, i32 20), align 4
  %8 = trunc i32 %7 to i16
  %9 = bitcast i16 %8 to half
  %10 = insertelement <2 x half> poison, half %9, i64 0
  %11 = lshr i32 %7, 16
  %12 = trunc i32 %11 to i16
  %13 = bitcast i16 %12 to half
  %14 = insertelement <2 x half> %10, half %13, i64 1
  %15 = lshr i32 %i, 2
  %16 = getelementptr i32, ptr @table, i32 %15
  %17 = and i32 %i, 3
  %18 = shl i32 %17, 3
  %19 = load i32, ptr %16, align 4
  %20 = lshr i32 %19, %18
  %21 = trunc i32 %20 to i8
  %local = alloca i32, align 4
  %22 = load i32, ptr %local, align 4
  %23 = and i32 %22, -65536
  %24 = or i32 %23, 7
  store i32 %24, ptr %local, align 4
  %25 = zext i8 %21 to i32
  %26 = lshr i32 %i, 2
  %27 = getelementptr i32, ptr @msl.buffer.0, i32 %26
  %28 = and i32 %i, 3
  %29 = shl i32 %28, 3
  %30 = and i32 %25, 255
  %31 = shl i32 %30, %29
  %32 = shl i32 255, %29
  %33 = xor i32 %32, -1
  %34 = atomicrmw and ptr %27, i32 %33 monotonic, align 4
  %35 = atomicrmw or ptr %27, i32 %31 monotonic, align 4
  %36 = trunc i64 %6 to i32
  %37 = lshr i64 %6, 32
  %38 = trunc i64 %37 to i32
  store i32 %36, ptr getelementptr (i8, ptr @record, i32 8), align 4
  store i32 %38, ptr getelementptr inbounds (i8, ptr @record, i32 12), align 4
  %first = extractelement <2 x half> %14, i32 0
  %39 = bitcast half %first to i16
  %40 = zext i16 %39 to i32
  %41 = shl i32 %40, 16
  %42 = atomicrmw and ptr getelementptr inbounds (i8, ptr @record, i32 20), i32 65535 monotonic, align 4
  %43 = atomicrmw or ptr getelementptr inbounds (i8, ptr @record, i32 20), i32 %41 monotonic, align 4
  ret void
}
