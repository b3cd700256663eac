; entry name=shade symbol=shade
; argument kind=built_in name=at
; value name=at attribute=position width=4
; result name=color attribute=color
; Function Attrs: convergent
define float @shade(<4 x float> noundef %at) #0 {
entry:
  %x = extractelement <4 x float> %at, i32 0
  %first = call float @msl.dfdx.f32(float %x)
  %root = call noundef float @llvm.sqrt.f32(float %first)
  br label %loop

loop:                                             ; preds = %loop, %entry
  %sum = phi float [ %root, %entry ], [ %next, %loop ]
  %next = fadd float %sum, %x
  %more = fcmp olt float %next, 1.000000e+01
  br i1 %more, label %loop, label %end

end:                                              ; preds = %loop
  ret float %next
}

; Function Attrs: convergent nounwind willreturn memory(none)
declare float @msl.dfdx.f32(float) #1

; Function Attrs: nocallback nofree nosync nounwind speculatable willreturn memory(none)
declare float @llvm.sqrt.f32(float) #2

attributes #0 = { convergent }
attributes #1 = { convergent nounwind willreturn memory(none) }
attributes #2 = { nocallback nofree nosync nounwind speculatable willreturn memory(none) }
