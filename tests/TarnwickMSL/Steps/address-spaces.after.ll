; shader name=main stage=kernel
; variable kind=storage_buffer global=msl.buffer.0 element_bytes=4
@msl.buffer.0 = external global i32

declare i1 @msl.in_device.1(ptr)

declare i1 @msl.in_thread.1(ptr)

define void @main() {
  %own = alloca i32, align 4
  %kept = alloca ptr, align 8
  %step = getelementptr i32, ptr @msl.buffer.0, i32 2
  store ptr %step, ptr %kept, align 8
  %later = load ptr, ptr %kept, align 8
  %c = call i1 @msl.in_thread.1(ptr %later)
  %ab = select i1 true, i1 false, i1 %c
  %number = zext i1 %ab to i32
  store i32 %number, ptr @msl.buffer.0, align 4
  ret void
}
