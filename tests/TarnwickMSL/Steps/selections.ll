; Two selections that end in one block.
@in = external constant i32
@out = external global i32

define void @main() {
entry:
  %i = load i32, ptr @in
  %isSmall = icmp ult i32 %i, 4
  br i1 %isSmall, label %small, label %end

small:
  %isZero = icmp eq i32 %i, 0
  br i1 %isZero, label %zero, label %end

zero:
  store i32 1, ptr @out
  br label %end

end:
  ret void
}
