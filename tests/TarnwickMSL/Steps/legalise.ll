@in = external constant <2 x i32>
@out = external global i32

define void @main() {
  %both = load <2 x i32>, ptr @in
  %sum = call i32 @llvm.vector.reduce.add.v2i32(<2 x i32> %both)
  %known = freeze i32 %sum
  %isOdd = trunc i32 %known to i1
  %same = call i1 @llvm.abs.i1(i1 %isOdd, i1 false)
  %bit = zext i1 %same to i32
  store i32 %bit, ptr @out
  ret void
}

declare i32 @llvm.vector.reduce.add.v2i32(<2 x i32>)
declare i1 @llvm.abs.i1(i1, i1)
