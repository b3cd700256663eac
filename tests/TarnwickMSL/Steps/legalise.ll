@in = external constant <2 x i32>
@out = external global i32

define void @main() {
  %both = load <2 x i32>, ptr @in
  %sum = call i32 @llvm.vector.reduce.add.v2i32(<2 x i32> %both)
  %known = freeze i32 %sum
  store i32 %known, ptr @out
  ret void
}

declare i32 @llvm.vector.reduce.add.v2i32(<2 x i32>)
