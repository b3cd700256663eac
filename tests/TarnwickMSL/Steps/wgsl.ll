; shader name=shade stage=kernel
; variable kind=storage_buffer global=msl.buffer.0 scalar=uint32 element_bytes=4
@msl.buffer.0 = external global i32

define void @main() {
  %x = load i32, ptr @msl.buffer.0
  %y = mul i32 %x, 3
  store i32 %y, ptr @msl.buffer.0
  ret void
}
