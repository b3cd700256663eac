; shader name=shade
; texture index=2 shape=2d component=uint is_read=1 is_written=1
@in = external constant i32
@out = external global <4 x i32>

define void @main() {
  %level = load i32, ptr @in
  %texel = call <4 x i32> @msl.read.2d.u32(i32 2, <2 x i32> zeroinitializer, i32 %level)
  store <4 x i32> %texel, ptr @out
  ret void
}

declare <4 x i32> @msl.read.2d.u32(i32, <2 x i32>, i32)
