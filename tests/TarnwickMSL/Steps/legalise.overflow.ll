@in = external constant <2 x i32>
@out = external global i1

define void @main() {
  %both = load <2 x i32>, ptr @in
  %a = extractelement <2 x i32> %both, i32 0
  %b = extractelement <2 x i32> %both, i32 1
  %sum = call { i32, i1 } @llvm.uadd.with.overflow.i32(i32 %a, i32 %b)
  %overflows = extractvalue { i32, i1 } %sum, 1
  store i1 %overflows, ptr @out
  ret void
}

declare { i32, i1 } @llvm.uadd.with.overflow.i32(i32, i32)
