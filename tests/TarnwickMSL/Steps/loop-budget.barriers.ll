; shader name=check stage=kernel
@in = external constant i32
@out = external global i32

; The first loop's rounds are the thread's own. All threads go through the second together.
define void @main() {
entry:
  %first = load i32, ptr @in
  call void @msl.grid_mark(i1 true)
  br label %own

own:
  %x = phi i32 [ %first, %entry ], [ %next, %own ]
  %next = mul i32 %x, 3
  %goesOn = icmp ne i32 %next, 1
  br i1 %goesOn, label %own, label %between

between:
  store i32 %next, ptr @out
  br label %together

together:
  call void @msl.barrier.1(i32 2, i32 8)
  %y = load i32, ptr @out
  %repeats = icmp ne i32 %y, 7
  br i1 %repeats, label %together, label %end

end:
  ret void
}
declare void @msl.grid_mark(i1) nounwind
declare void @msl.barrier.1(i32, i32) nounwind convergent
