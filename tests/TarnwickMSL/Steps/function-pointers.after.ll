; entry name=shade symbol=shade
@curves = internal constant [2 x i64] [i64 1, i64 2]

define internal float @twice(float %x) {
  %y = fadd float %x, %x
  ret float %y
}

define internal float @square(float %x) {
  %y = fmul float %x, %x
  ret float %y
}

define internal float @apply(ptr %f, float %x) {
  %place = alloca ptr, align 8
  store ptr %f, ptr %place, align 8
  %1 = load i64, ptr %place, align 8
  %2 = trunc i64 %1 to i32
  %3 = call float @msl.call_by_number(float %x, i32 %2)
  ret float %3
}

define float @shade(float %x, i32 %i) {
  %place = getelementptr [2 x ptr], ptr @curves, i32 0, i32 %i
  %1 = load i64, ptr %place, align 8
  %2 = trunc i64 %1 to i32
  %3 = call float @msl.call_by_number(float %x, i32 %2)
  %z = call float @apply(ptr inttoptr (i64 1 to ptr), float %3)
  ret float %z
}

; Function Attrs: nounwind
define internal float @msl.call_by_number(float %0, i32 %1) #0 {
entry:
  switch i32 %1, label %none [
    i32 1, label %twice
    i32 2, label %square
  ]

none:                                             ; preds = %entry
  ret float 0.000000e+00

twice:                                            ; preds = %entry
  %2 = call float @twice(float %0)
  ret float %2

square:                                           ; preds = %entry
  %3 = call float @square(float %0)
  ret float %3
}

attributes #0 = { nounwind }
