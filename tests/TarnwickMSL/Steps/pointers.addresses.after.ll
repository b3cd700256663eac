; dead code
; shader name=main stage=kernel
; variable kind=storage_buffer global=msl.buffer.0 element_bytes=16
; variable kind=buffer_addresses global=msl.addresses element_bytes=248 is_reference=1
@msl.buffer.0 = external global { i64, float }
@msl.addresses = external global [31 x i64]

define void @main() {
  %1 = load i64, ptr @msl.addresses, align 8
  %2 = load i64, ptr @msl.buffer.0, align 8
  %3 = inttoptr i64 %2 to ptr
  %value = getelementptr { ptr, float }, ptr %3, i32 0, i32 1
  %4 = icmp ne i64 %2, 0
  br i1 %4, label %5, label %9

5:                                                ; preds = %0
  %6 = inttoptr i64 %2 to ptr
  %7 = getelementptr { ptr, float }, ptr %6, i32 0, i32 1
  %8 = load float, ptr %7, align 4
  br label %9

9:                                                ; preds = %0, %5
  %10 = phi float [ 0.000000e+00, %0 ], [ %8, %5 ]
  %after = fadd float %10, 1.000000e+00
  %11 = icmp ne i64 %2, 0
  br i1 %11, label %12, label %15

12:                                               ; preds = %9
  %13 = inttoptr i64 %2 to ptr
  %14 = getelementptr { ptr, float }, ptr %13, i32 0, i32 1
  store float %after, ptr %14, align 4
  br label %15

15:                                               ; preds = %9, %12
  %16 = add i64 %1, 0
  %17 = icmp ne i64 %2, 0
  br i1 %17, label %18, label %20

18:                                               ; preds = %15
  %19 = inttoptr i64 %2 to ptr
  store i64 %16, ptr %19, align 8
  br label %20

20:                                               ; preds = %15, %18
  ret void
}
