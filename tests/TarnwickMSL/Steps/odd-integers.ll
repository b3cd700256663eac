; The bits above the odd width stay zero, and functions on bits see them as absent. Memory keeps
; its bytes.
@in = external constant i32
@out = external global i32
@bytes = external global [4 x i8]

define void @main() {
  %x = load i32, ptr @in
  %five = trunc i32 %x to i5
  %half = ashr i5 %five, 1
  %y = sext i5 %half to i32
  store i32 %y, ptr @out
  %reversed = call i5 @llvm.bitreverse.i5(i5 %five)
  %zeros = call i5 @llvm.cttz.i5(i5 %five, i1 false)
  %high = call i5 @llvm.ctlz.i5(i5 %five, i1 false)
  %larger = call i5 @llvm.smax.i5(i5 %zeros, i5 %high)
  %turned = call i5 @llvm.fshl.i5(i5 %reversed, i5 %larger, i5 3)
  %z = zext i5 %turned to i32
  store i32 %z, ptr @out
  %isSmall = icmp ult i32 %x, 7
  %sameBit = call i1 @llvm.bitreverse.i1(i1 %isSmall)
  %small = zext i1 %sameBit to i32
  store i32 %small, ptr @out
  %three = load i24, ptr @bytes
  %turn = xor i24 %three, 5
  store i24 %turn, ptr @bytes
  ret void
}
