; A list in a buffer: the next record is at the address that the first one holds. A pointer to the
; first is stored in the second, so the host gives the address of the buffer.
; shader name=main stage=kernel
; variable kind=storage_buffer global=msl.buffer.0 element_bytes=16
@msl.buffer.0 = external global { ptr, float }

define void @main() {
  %next = load ptr, ptr @msl.buffer.0
  %value = getelementptr { ptr, float }, ptr %next, i32 0, i32 1
  %before = load float, ptr %value
  %after = fadd float %before, 1.0
  store float %after, ptr %value
  store ptr @msl.buffer.0, ptr %next
  ret void
}
