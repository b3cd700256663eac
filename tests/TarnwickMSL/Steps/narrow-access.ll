@msl.buffer.0 = external global <4 x float>

define void @main() {
  %all = load <4 x float>, ptr @msl.buffer.0
  %x = extractelement <4 x float> %all, i32 0
  %changed = insertelement <4 x float> %all, float %x, i32 3
  store <4 x float> %changed, ptr @msl.buffer.0
  ret void
}
