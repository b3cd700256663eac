; shader name=fill stage=kernel
; variable global=msl.in.thread_position_in_grid built_in=thread_position_in_grid scalar=uint32
; variable kind=push_constant global=msl.grid scalar=uint32
; variable kind=storage_buffer global=msl.buffer.0 element_bytes=4 name=out
@msl.in.thread_position_in_grid = external constant <3 x i32>
@msl.grid = external constant { <3 x i32>, <3 x i32>, <3 x i32> }
@msl.buffer.0 = external global i32

; Function Attrs: nounwind
define void @main() #0 {
entry:
  %0 = load <3 x i32>, ptr @msl.in.thread_position_in_grid, align 16
  %1 = load <3 x i32>, ptr @msl.grid, align 16
  %2 = extractelement <3 x i32> %1, i64 0
  %3 = extractelement <3 x i32> %0, i64 0
  %4 = icmp uge i32 %3, %2
  %5 = or i1 false, %4
  %6 = extractelement <3 x i32> %1, i64 1
  %7 = extractelement <3 x i32> %0, i64 1
  %8 = icmp uge i32 %7, %6
  %9 = or i1 %5, %8
  %10 = extractelement <3 x i32> %1, i64 2
  %11 = extractelement <3 x i32> %0, i64 2
  %12 = icmp uge i32 %11, %10
  %13 = or i1 %9, %12
  br i1 %13, label %outside, label %inside

outside:                                          ; preds = %entry
  ret void

inside:                                           ; preds = %entry
  %14 = load <3 x i32>, ptr @msl.in.thread_position_in_grid, align 16
  %15 = extractelement <3 x i32> %14, i64 0
  store i32 %15, ptr @msl.buffer.0, align 4
  ret void
}

attributes #0 = { nounwind }
