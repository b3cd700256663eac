@llvm.global_ctors = appending global [0 x { i32, ptr, ptr }] zeroinitializer

define float @f() local_unnamed_addr {
  ret float 3.000000e+00
}
