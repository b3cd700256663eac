; More than 64 parts are copied in a loop.
@in = external constant [100 x i32]
@out = external global [100 x i32]

define void @main() {
  call void @llvm.memcpy.p0.p0.i32(ptr @out, ptr @in, i32 400, i1 false)
  ret void
}

declare void @llvm.memcpy.p0.p0.i32(ptr, ptr, i32, i1)
