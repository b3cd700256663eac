; Bytes, halves and long integers in words: at places that are known when the program is compiled
; and at others. A store of part of a word in memory of several invocations is atomic.
; lacks int8=1 int16=1 int64=1 half=1
; variable kind=storage_buffer global=msl.buffer.0 binding=0 element_bytes=1
@msl.buffer.0 = external global [0 x i8]
@record = external global { i8, i16, i64, float, [2 x half] }
@table = internal constant [6 x i8] c"abcdef"
@out = external global i32

define void @main() {
  %i = load i32, ptr @out
  %long = load i64, ptr getelementptr (i8, ptr @record, i32 8)
  %halves = load <2 x half>, ptr getelementptr (i8, ptr @record, i32 20)
  %p = getelementptr i8, ptr @table, i32 %i
  %letter = load i8, ptr %p
  %local = alloca i16
  store i16 7, ptr %local
  %q = getelementptr i8, ptr @msl.buffer.0, i32 %i
  store i8 %letter, ptr %q
  store i64 %long, ptr getelementptr (i8, ptr @record, i32 8)
  %first = extractelement <2 x half> %halves, i32 0
  store half %first, ptr getelementptr (i8, ptr @record, i32 22)
  ret void
}
