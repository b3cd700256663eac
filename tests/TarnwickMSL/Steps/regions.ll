; Two ways out of a selection meet in a block that a third way passes.
@in = external constant i32
@out = external global i32

define void @main() {
entry:
  %i = load i32, ptr @in
  %isSmall = icmp ult i32 %i, 4
  br i1 %isSmall, label %small, label %other

small:
  %isZero = icmp eq i32 %i, 0
  br i1 %isZero, label %end, label %other

other:
  store i32 1, ptr @out
  br label %end

end:
  ret void
}
