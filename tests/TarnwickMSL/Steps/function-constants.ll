; entry name=shade symbol=shade stage=fragment
; constant name=tint symbol=tint index=3 scalar=float width=2
; constant name=isDark symbol=isDark index=4
@tint = external constant <2 x float>
@isDark = external constant i8

define float @shade() {
  %all = load <2 x float>, ptr @tint
  %x = extractelement <2 x float> %all, i32 0
  %dark = load i8, ptr @isDark
  %known = call i1 @msl.function_constant_defined.1(ptr @tint)
  ret float %x
}

declare i1 @msl.function_constant_defined.1(ptr)
