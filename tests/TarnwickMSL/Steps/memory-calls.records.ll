; A long list of records is filled in a loop over records, in parts of the types of their members.
%Row = type <{ <3 x float>, [2 x i16], i8, [11 x i8] }>
@out = external global [4 x float]

define void @main() {
  %list = alloca [40 x %Row], align 16
  %rest = getelementptr i8, ptr %list, i32 96
  call void @llvm.memset.p0.i32(ptr %rest, i8 0, i32 1184, i1 false)
  %at = getelementptr i8, ptr %list, i32 128
  %a = load float, ptr %at
  store float %a, ptr @out
  ret void
}

declare void @llvm.memset.p0.i32(ptr, i8, i32, i1)
