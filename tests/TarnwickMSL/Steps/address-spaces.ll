; A pointer into a buffer, one to a local, and one that is in memory still.
; shader name=main stage=kernel
; variable kind=storage_buffer global=msl.buffer.0 element_bytes=4
@msl.buffer.0 = external global i32

declare i1 @msl.in_device.1(ptr)
declare i1 @msl.in_thread.1(ptr)

define void @main() {
  %own = alloca i32
  %kept = alloca ptr
  %step = getelementptr i32, ptr @msl.buffer.0, i32 2
  store ptr %step, ptr %kept
  %a = call i1 @msl.in_device.1(ptr %step)
  %b = call i1 @msl.in_device.1(ptr %own)
  %later = load ptr, ptr %kept
  %c = call i1 @msl.in_thread.1(ptr %later)
  %ab = select i1 %a, i1 %b, i1 %c
  %number = zext i1 %ab to i32
  store i32 %number, ptr @msl.buffer.0
  ret void
}
