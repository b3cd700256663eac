; dead code
; shader
@msl.buffer.0 = external global float

define void @main() {
  %1 = call i32 @msl.atomic_load.u32(ptr @msl.buffer.0)
  br label %again

again:                                            ; preds = %again, %0
  %2 = phi i32 [ %1, %0 ], [ %6, %again ]
  %3 = bitcast i32 %2 to float
  %4 = fadd float %3, 1.000000e+00
  %5 = bitcast float %4 to i32
  %6 = call i32 @msl.atomic_compare_exchange.u32(ptr @msl.buffer.0, i32 %2, i32 %5)
  %7 = icmp eq i32 %6, %2
  br i1 %7, label %.split, label %again

.split:                                           ; preds = %again
  ret void
}

declare float @msl.atomic_fetch_add.f32(ptr, float)

; Function Attrs: nounwind willreturn
declare i32 @msl.atomic_load.u32(ptr) #0

; Function Attrs: nounwind willreturn
declare i32 @msl.atomic_compare_exchange.u32(ptr, i32, i32) #0

attributes #0 = { nounwind willreturn }
