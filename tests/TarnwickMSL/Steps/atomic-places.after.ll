; shader
@offset = external constant i64
@in = external constant i32
@msl.buffer.0 = external global i32

define void @main() {
  %offset = load i64, ptr @offset, align 8
  %1 = trunc i64 %offset to i32
  %2 = add i32 8, %1
  %3 = lshr exact i32 %2, 2
  %4 = getelementptr i32, ptr @msl.buffer.0, i32 %3
  %before = call i32 @msl.atomic_fetch_add.u32(ptr %4, i32 1)
  %i = load i32, ptr @in, align 4
  %whole = getelementptr i32, ptr @msl.buffer.0, i32 %i
  %other = call i32 @msl.atomic_fetch_add.u32(ptr %whole, i32 1)
  ret void
}

declare i32 @msl.atomic_fetch_add.u32(ptr, i32)
