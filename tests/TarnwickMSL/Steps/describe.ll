; entry name=shade symbol=shade stage=fragment
; argument kind=built_in name=at
; value name=at attribute=position width=4
; result name=color attribute=color
define float @shade(<4 x float> noundef %at) mustprogress noinline optnone {
entry:
  %x = extractelement <4 x float> %at, i32 0
  %first = call float @msl.dfdx.f32(float %x)
  %root = call float @llvm.sqrt.f32(float %first)
  br label %loop

loop:
  %sum = phi float [ %root, %entry ], [ %next, %loop ]
  %next = fadd float %sum, %x
  %more = fcmp olt float %next, 1.000000e+01
  br i1 %more, label %loop, label %end, !llvm.loop !0

end:
  ret float %next
}

declare float @msl.dfdx.f32(float)
declare float @llvm.sqrt.f32(float)

!0 = distinct !{!0, !1}
!1 = !{!"llvm.loop.mustprogress"}
