; entry name=shade symbol=shade
; constant name=tint symbol=tint index=3 scalar=float width=2
; constant name=isDark symbol=isDark index=4
@tint = internal global <2 x float> zeroinitializer, section "function_constant"
@isDark = internal global i8 0, section "function_constant"
@llvm.global_ctors = appending global [1 x { i32, ptr, ptr }] [{ i32, ptr, ptr } { i32 65535, ptr @msl.function_constants, ptr null }]

define float @shade() {
  %all = load <2 x float>, ptr @tint, align 8
  %x = extractelement <2 x float> %all, i32 0
  %dark = load i8, ptr @isDark, align 1
  %1 = call i1 @msl.function_constant.i1(i32 284)
  ret float %x
}

declare i1 @msl.function_constant.i1(i32)

; Function Attrs: nounwind
define internal void @msl.function_constants() #0 {
entry:
  %0 = call float @msl.function_constant.float(i32 280)
  store float %0, ptr @tint, align 4
  %1 = call float @msl.function_constant.float(i32 281)
  store float %1, ptr getelementptr inbounds (i8, ptr @tint, i64 4), align 4
  %2 = call i1 @msl.function_constant.i1(i32 288)
  %3 = zext i1 %2 to i8
  store i8 %3, ptr @isDark, align 1
  ret void
}

declare float @msl.function_constant.float(i32)

attributes #0 = { nounwind }
