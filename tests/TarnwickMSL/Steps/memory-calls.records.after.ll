; shader
%Row = type <{ <3 x float>, [2 x i16], i8, [11 x i8] }>

@out = external global [4 x float]

define void @main() {
  %list = alloca [40 x %Row], align 16
  %rest = getelementptr inbounds i8, ptr %list, i32 96
  br label %.split

.split:                                           ; preds = %.split, %0
  %iv = phi i32 [ 0, %0 ], [ %iv.next, %.split ]
  %1 = getelementptr %Row, ptr %rest, i32 %iv
  store <3 x float> zeroinitializer, ptr %1, align 1
  %2 = getelementptr inbounds i8, ptr %1, i32 16
  store i16 0, ptr %2, align 1
  %3 = getelementptr inbounds i8, ptr %1, i32 18
  store i16 0, ptr %3, align 1
  %4 = getelementptr inbounds i8, ptr %1, i32 20
  store i8 0, ptr %4, align 1
  %5 = getelementptr inbounds i8, ptr %1, i32 21
  store i8 0, ptr %5, align 1
  %6 = getelementptr inbounds i8, ptr %1, i32 22
  store i8 0, ptr %6, align 1
  %7 = getelementptr inbounds i8, ptr %1, i32 23
  store i8 0, ptr %7, align 1
  %8 = getelementptr inbounds i8, ptr %1, i32 24
  store i32 0, ptr %8, align 1
  %9 = getelementptr inbounds i8, ptr %1, i32 28
  store i32 0, ptr %9, align 1
  %iv.next = add nuw nsw i32 %iv, 1
  %iv.check = icmp eq i32 %iv.next, 37
  br i1 %iv.check, label %.split.split, label %.split

.split.split:                                     ; preds = %.split
  %at = getelementptr inbounds i8, ptr %list, i32 128
  %a = load float, ptr %at, align 4
  store float %a, ptr @out, align 4
  ret void
}

; Function Attrs: nocallback nofree nounwind willreturn memory(argmem: write)
declare void @llvm.memset.p0.i32(ptr nocapture writeonly, i8, i32, i1 immarg) #0

attributes #0 = { nocallback nofree nounwind willreturn memory(argmem: write) }
