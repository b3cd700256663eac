; shader name=shade
; variable kind=storage_buffer global=msl.buffer.0
; variable kind=uniform_buffer global=msl.buffer.1 index=1
; texture index=3 shape=2d
; texture index=5 shape=2d
@msl.buffer.0 = external global i32
@msl.buffer.1 = external constant i32

define void @main() {
  %x = load i32, ptr @msl.buffer.1
  %width = call i32 @msl.width.2d(i32 5, i32 %x)
  ret void
}

declare i32 @msl.width.2d(i32, i32)
