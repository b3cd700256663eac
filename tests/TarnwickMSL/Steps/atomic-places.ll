@offset = external constant i64
@in = external constant i32
@msl.buffer.0 = external global i32

define void @main() {
  %offset = load i64, ptr @offset
  %bytes = getelementptr i8, ptr @msl.buffer.0, i64 %offset
  %place = getelementptr i8, ptr %bytes, i64 8
  %before = call i32 @msl.atomic_fetch_add.u32(ptr %place, i32 1)
  %i = load i32, ptr @in
  %whole = getelementptr i32, ptr @msl.buffer.0, i32 %i
  %other = call i32 @msl.atomic_fetch_add.u32(ptr %whole, i32 1)
  ret void
}

declare i32 @msl.atomic_fetch_add.u32(ptr, i32)
