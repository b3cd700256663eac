; A record is copied, one number of it is changed, and it is copied back: only the number is written.
@records = external global [2 x [400 x i32]]

define void @main() {
  %rest = alloca [399 x i32]
  %second = getelementptr [400 x i32], ptr @records, i32 1
  %number = load i32, ptr %second
  %others = getelementptr i32, ptr %second, i32 1
  call void @llvm.memcpy.p0.p0.i32(ptr %rest, ptr %others, i32 1596, i1 false)
  %more = add i32 %number, 1
  store i32 %more, ptr %second
  call void @llvm.memcpy.p0.p0.i32(ptr %others, ptr %rest, i32 1596, i1 false)
  ret void
}

declare void @llvm.memcpy.p0.p0.i32(ptr, ptr, i32, i1)
