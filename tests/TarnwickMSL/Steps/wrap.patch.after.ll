; shader name=surface stage=vertex patch=quad
; variable global=msl.in.patch is_of_patch=1 scalar=uint32
; variable kind=output global=msl.out.position built_in=position
; attribute name=at index=5 scalar=half width=2 is_of_control_point=1
; attribute name=weight index=2
%patch = type { float }

@msl.in.patch = external constant <4 x i32>
@msl.out.position = external global <4 x float>

declare void @msl.control_point.1(ptr, i32)

declare i32 @msl.control_points.1()

; Function Attrs: nounwind willreturn memory(none)
declare <4 x float> @msl.attribute.f32(i32, i32) #0

; Function Attrs: nounwind
define void @main() #1 {
entry:
  %point = alloca <2 x half>, align 4
  %in = alloca %patch, align 8
  %0 = alloca %patch, align 16
  %1 = call <4 x float> @msl.attribute.f32(i32 2, i32 0)
  %2 = extractelement <4 x float> %1, i64 0
  store float %2, ptr %0, align 16
  call void @llvm.memcpy.p0.p0.i64(ptr align 1 %in, ptr align 1 %0, i64 4, i1 false)
  %weight = load float, ptr %in, align 4
  %3 = load <4 x i32>, ptr @msl.in.patch, align 16
  %4 = extractelement <4 x i32> %3, i64 3
  %last = sub i32 %4, 1
  %5 = getelementptr inbounds i8, ptr %point, i64 0
  %6 = call <4 x float> @msl.attribute.f32(i32 5, i32 %last)
  %7 = shufflevector <4 x float> %6, <4 x float> poison, <2 x i32> <i32 0, i32 1>
  %8 = fptrunc <2 x float> %7 to <2 x half>
  store <2 x half> %8, ptr %5, align 1
  %x = load half, ptr %point, align 2
  %wide = fpext half %x to float
  %sum = fadd float %wide, %weight
  %one = insertelement <4 x float> zeroinitializer, float %sum, i32 0
  %9 = freeze <4 x float> %one
  store <4 x float> %9, ptr @msl.out.position, align 16
  ret void
}

; Function Attrs: nocallback nofree nounwind willreturn memory(argmem: readwrite)
declare void @llvm.memcpy.p0.p0.i64(ptr noalias nocapture writeonly, ptr noalias nocapture readonly, i64, i1 immarg) #2

attributes #0 = { nounwind willreturn memory(none) }
attributes #1 = { nounwind }
attributes #2 = { nocallback nofree nounwind willreturn memory(argmem: readwrite) }
