; shader name=shade
; variable global=msl.in.position built_in=position
; variable kind=uniform_buffer global=msl.buffer.1 index=1 element_bytes=4 name=sizes
; variable kind=output global=msl.out.color.0
; texture index=2 shape=2d component=float name=picture
%texture = type { i32 }

@msl.in.position = external constant <4 x float>
@msl.buffer.1 = external constant float
@msl.out.color.0 = external global float

declare i32 @msl.width.2d(i32, i32)

; Function Attrs: nounwind
define void @main() #0 {
entry:
  %picture = alloca %texture, align 8
  %0 = alloca %texture, align 16
  %1 = load <4 x float>, ptr @msl.in.position, align 16
  store i32 2, ptr %0, align 4
  call void @llvm.memcpy.p0.p0.i64(ptr align 1 %picture, ptr align 1 %0, i64 4, i1 false)
  %x = extractelement <4 x float> %1, i32 0
  %size = load float, ptr @msl.buffer.1, align 4
  %handle = load i32, ptr %picture, align 4
  %width = call i32 @msl.width.2d(i32 %handle, i32 0)
  %w = uitofp i32 %width to float
  %y = fmul float %x, %size
  %z = fdiv float %y, %w
  store float %z, ptr @msl.out.color.0, align 4
  ret void
}

; Function Attrs: nocallback nofree nounwind willreturn memory(argmem: readwrite)
declare void @llvm.memcpy.p0.p0.i64(ptr noalias nocapture writeonly, ptr noalias nocapture readonly, i64, i1 immarg) #1

attributes #0 = { nounwind }
attributes #1 = { nocallback nofree nounwind willreturn memory(argmem: readwrite) }
