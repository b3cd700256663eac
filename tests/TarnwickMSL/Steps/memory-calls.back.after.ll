; shader
@records = external global [2 x [400 x i32]]

define void @main() {
  %second = getelementptr [400 x i32], ptr @records, i32 1
  %number = load i32, ptr %second, align 4
  %more = add i32 %number, 1
  store i32 %more, ptr %second, align 4
  ret void
}

; Function Attrs: nocallback nofree nounwind willreturn memory(argmem: readwrite)
declare void @llvm.memcpy.p0.p0.i32(ptr noalias nocapture writeonly, ptr noalias nocapture readonly, i32, i1 immarg) #0

attributes #0 = { nocallback nofree nounwind willreturn memory(argmem: readwrite) }
