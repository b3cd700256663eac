@out = external global [2 x float]

define void @main() {
  call void @llvm.memset.p0.i32(ptr @out, i8 0, i32 8, i1 false)
  ret void
}

declare void @llvm.memset.p0.i32(ptr, i8, i32, i1)
