; shader name=main stage=kernel
; variable kind=storage_buffer global=msl.buffer.0 element_bytes=4
; variable kind=storage_buffer global=msl.buffer.1 index=1 element_bytes=4
@msl.buffer.0 = external global i32
@msl.buffer.1 = external global i32

declare i1 @msl.in_device.1(ptr)

define void @main() {
  %first = load i32, ptr @msl.buffer.0, align 4
  %is = icmp eq i32 %first, 0
  %chosen = select i1 %is, ptr @msl.buffer.0, ptr @msl.buffer.1
  %number = zext i1 true to i32
  store i32 %number, ptr @msl.buffer.0, align 4
  ret void
}
