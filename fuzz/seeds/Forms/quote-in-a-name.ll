; A dispatch is rounded up to whole threadgroups: invocations outside the grid return.
; entry name=fill symbol=fill stage=kernel
; argument kind=buffer name=out space=device element_bytes=4 element_type=i32
; argument kind=built_in name=i
; value name=i attribute=thread_position_in_grid"scalar=uint32
; shader name=fill stage=kernel
define internal void @fill(ptr %out, i32 %i) {
  store i32 %i, ptr %out
  ret void
}
