; shader
@in = external constant [100 x i32]
@out = external global [100 x i32]

define void @main() {
  br label %.split

.split:                                           ; preds = %.split, %0
  %iv = phi i32 [ 0, %0 ], [ %iv.next, %.split ]
  %1 = getelementptr i32, ptr @in, i32 %iv, !msl.words !0
  %2 = load i32, ptr %1, align 4
  %3 = getelementptr i32, ptr @out, i32 %iv, !msl.words !0
  store i32 %2, ptr %3, align 4
  %iv.next = add nuw nsw i32 %iv, 1
  %iv.check = icmp eq i32 %iv.next, 100
  br i1 %iv.check, label %.split.split, label %.split

.split.split:                                     ; preds = %.split
  ret void
}

; Function Attrs: nocallback nofree nounwind willreturn memory(argmem: readwrite)
declare void @llvm.memcpy.p0.p0.i32(ptr noalias nocapture writeonly, ptr noalias nocapture readonly, i32, i1 immarg) #0

attributes #0 = { nocallback nofree nounwind willreturn memory(argmem: readwrite) }

!0 = !{}
