; A copy takes the parts of the record on either side.
%record = type { float, [2 x i32] }
@in = external constant %record
@out = external global %record

define void @main() {
  call void @llvm.memcpy.p0.p0.i32(ptr @out, ptr @in, i32 12, i1 false)
  ret void
}

declare void @llvm.memcpy.p0.p0.i32(ptr, ptr, i32, i1)
