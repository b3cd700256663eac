; The first list is divided: one member is stored at a changing index, one of two lanes is chosen, and
; bytes of padding are stored. The second one has an access to two members at once.
%Row = type { <3 x float>, [2 x i32], half }
@in = external constant [4 x i32]
@out = external global [4 x float]

define void @main() {
  %list = alloca [9 x %Row], align 16
  %other = alloca [9 x %Row], align 16
  %i = load i32, ptr @in
  %is = icmp eq i32 %i, 3
  %stored = getelementptr [9 x %Row], ptr %list, i32 0, i32 %i, i32 1, i32 1
  store i32 5, ptr %stored
  %padding = getelementptr i8, ptr %list, i32 44
  store i32 0, ptr %padding
  %lane = getelementptr [9 x %Row], ptr %list, i32 0, i32 2, i32 0, i32 1
  %other.lane = getelementptr [9 x %Row], ptr %list, i32 0, i32 %i, i32 0, i32 2
  %chosen = select i1 %is, ptr %lane, ptr %other.lane
  %a = load float, ptr %chosen
  store float %a, ptr @out
  %both = getelementptr [9 x %Row], ptr %other, i32 0, i32 %i, i32 1, i32 1
  store i64 7, ptr %both
  ret void
}
