; entry name=shade symbol=shade stage=fragment
@curves = internal constant [2 x ptr] [ptr @twice, ptr @square]

define internal float @twice(float %x) {
  %y = fadd float %x, %x
  ret float %y
}

define internal float @square(float %x) {
  %y = fmul float %x, %x
  ret float %y
}

define internal float @apply(ptr %f, float %x) {
  %place = alloca ptr
  store ptr %f, ptr %place
  %g = load ptr, ptr %place
  %y = call float %g(float %x)
  ret float %y
}

define float @shade(float %x, i32 %i) {
  %place = getelementptr [2 x ptr], ptr @curves, i32 0, i32 %i
  %curve = load ptr, ptr %place
  %y = call float %curve(float %x)
  %z = call float @apply(ptr @twice, float %y)
  ret float %z
}
