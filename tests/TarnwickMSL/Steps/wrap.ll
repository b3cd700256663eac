; entry name=shade symbol=shade stage=fragment
; argument kind=built_in name=at
; value name=at attribute=position width=4
; argument kind=buffer name=sizes index=1 element_bytes=4 element_type=float
; argument kind=texture name=picture index=2 shape=2d component=float
; result name=color attribute=color
; shader name=shade
%texture = type { i32 }

define internal float @shade(<4 x float> %at, ptr %sizes, ptr byval(%texture) %picture) {
  %x = extractelement <4 x float> %at, i32 0
  %size = load float, ptr %sizes
  %handle = load i32, ptr %picture
  %width = call i32 @msl.width.2d(i32 %handle, i32 0)
  %w = uitofp i32 %width to float
  %y = fmul float %x, %size
  %z = fdiv float %y, %w
  ret float %z
}

declare i32 @msl.width.2d(i32, i32)
