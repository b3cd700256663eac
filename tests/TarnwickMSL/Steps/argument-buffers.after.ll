; shader name=main stage=kernel
; variable kind=uniform_buffer global=msl.buffer.0 element_bytes=16 is_reference=1
; variable kind=storage_buffer global=msl.buffer.31 index=31 element_bytes=4
; variable kind=storage_buffer global=msl.buffer.64 index=64 element_bytes=4
; texture index=128 shape=2d component=float is_read=1
; texture index=129 shape=2d component=float is_read=1
; texture index=65536 shape=2d component=float is_read=1
; texture index=65537 shape=2d component=float is_read=1
; member kind=texture bytes=4 index=128 stride=16
; member kind=texture id=1 offset=4 bytes=4 index=129 stride=16
; member kind=buffer id=2 offset=8 bytes=8 index=31 stride=16
; member kind=texture offset=16 bytes=4 index=65536 stride=16
; member kind=texture id=1 offset=20 bytes=4 index=65537 stride=16
; member kind=buffer id=2 offset=24 bytes=8 index=64 stride=16
@in = external constant i32
@msl.buffer.0 = external global { [2 x i32], ptr }
@msl.buffer.31 = external global float
@msl.buffer.64 = external global float

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
  %other = getelementptr i8, ptr @msl.buffer.0, i32 20
  %one = call <4 x float> @msl.read.2d.f32(i32 65537, <2 x i32> zeroinitializer, i32 0)
  %blue = extractelement <4 x float> %one, i32 2
  %end = getelementptr i8, ptr @msl.buffer.31, i32 4
  store float %blue, ptr %end, align 4
  ret void
}
