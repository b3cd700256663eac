; Each attribute is a call; a control point is read by its members.
; entry name=surface symbol=surface stage=vertex patch=quad
; argument kind=stage_in name=patch
; value name=weight attribute=attribute index=2
; value name=at attribute=attribute index=5 scalar=half width=2 is_of_control_point=1
; result attribute=position width=4
; shader name=surface stage=vertex patch=quad
%patch = type { float }

define internal <4 x float> @surface(ptr byval(%patch) %in) {
  %point = alloca <2 x half>
  %weight = load float, ptr %in
  %count = call i32 @msl.control_points.1()
  %last = sub i32 %count, 1
  call void @msl.control_point.1(ptr %point, i32 %last)
  %x = load half, ptr %point
  %wide = fpext half %x to float
  %sum = fadd float %wide, %weight
  %one = insertelement <4 x float> zeroinitializer, float %sum, i32 0
  ret <4 x float> %one
}

declare void @msl.control_point.1(ptr, i32)
declare i32 @msl.control_points.1()
