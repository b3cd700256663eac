; shader
%record = type { float, [2 x i32] }

@in = external constant %record
@out = external global %record

define void @main() {
  %1 = load float, ptr @in, align 1
  %2 = load i32, ptr getelementptr inbounds (i8, ptr @in, i32 4), align 1
  %3 = load i32, ptr getelementptr inbounds (i8, ptr @in, i32 8), align 1
  store float %1, ptr @out, align 1
  store i32 %2, ptr getelementptr inbounds (i8, ptr @out, i32 4), align 1
  store i32 %3, ptr getelementptr inbounds (i8, ptr @out, i32 8), align 1
  ret void
}

; Function Attrs: nocallback nofree nounwind willreturn memory(argmem: readwrite)
declare void @llvm.memcpy.p0.p0.i32(ptr noalias nocapture writeonly, ptr noalias nocapture readonly, i32, i1 immarg) #0

attributes #0 = { nocallback nofree nounwind willreturn memory(argmem: readwrite) }
