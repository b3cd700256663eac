; shader
@out = external global [2 x float]

define void @main() {
  store float 0.000000e+00, ptr @out, align 1
  store float 0.000000e+00, ptr getelementptr inbounds (i8, ptr @out, i64 4), align 1
  ret void
}

; Function Attrs: nocallback nofree nounwind willreturn memory(argmem: write)
declare void @llvm.memset.p0.i32(ptr nocapture writeonly, i8, i32, i1 immarg) #0

attributes #0 = { nocallback nofree nounwind willreturn memory(argmem: write) }
