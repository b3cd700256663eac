; entry name=shade symbol=shade
@curves = internal constant [2 x i32] [i32 1, i32 2]

define internal float @twice(float %x) {
  %y = fadd float %x, %x
  ret float %y
}

define internal float @square(float %x) {
  %y = fmul float %x, %x
  ret float %y
}

define internal float @apply(ptr %f, float %x) {
  %place = alloca ptr, align 4
  store ptr %f, ptr %place, align 4
  %1 = load i32, ptr %place, align 4
  %2 = call float @msl.call_by_number(float %x, i32 %1)
  ret float %2
}

define float @shade(float %x, i32 %i) {
  %place = getelementptr [2 x ptr], ptr @curves, i32 0, i32 %i
  %1 = load i32, ptr %place, align 4
  %2 = call float @msl.call_by_number(float %x, i32 %1)
  %z = call float @apply(ptr inttoptr (i32 1 to ptr), float %2)
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
