; shader name=main stage=kernel
; variable kind=uniform_buffer global=msl.buffer.0 element_bytes=16 is_reference=1
; variable kind=storage_buffer global=msl.buffer.31 index=31 element_bytes=4
; member kind=texture bytes=4 index=128
; member kind=texture id=1 offset=4 bytes=4 index=129
; member kind=buffer id=2 offset=8 bytes=8 index=31
@in = external constant i32
@msl.buffer.0 = external global { [2 x i32], ptr }
@msl.buffer.31 = external global float

declare <4 x float> @msl.read.2d.f32(i32, <2 x i32>, i32)

define void @main() {
  %i = load i32, ptr @in, align 4
  %place = getelementptr [2 x i32], ptr @msl.buffer.0, i32 0, i32 %i
  %1 = mul i32 %i, 4
  %2 = add i32 0, %1
  %3 = icmp eq i32 %2, 4
  %4 = select i1 %3, i32 129, i32 128
  %texel = call <4 x float> @msl.read.2d.f32(i32 %4, <2 x i32> zeroinitializer, i32 0)
  %red = extractelement <4 x float> %texel, i32 0
  %second = getelementptr i8, ptr @msl.buffer.0, i32 8
  store float %red, ptr @msl.buffer.31, align 4
  ret void
}
