; shader
@msl.buffer.0 = external global <4 x float>

define void @main() {
  %1 = load float, ptr @msl.buffer.0, align 16
  store float %1, ptr getelementptr inbounds (float, ptr @msl.buffer.0, i32 3), align 4
  ret void
}
