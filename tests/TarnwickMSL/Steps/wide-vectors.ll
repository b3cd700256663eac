@msl.buffer.0 = external global [8 x i8]
@out = external global [2 x i32]

define void @main() {
  %bytes = load <8 x i8>, ptr @msl.buffer.0, align 4
  %words = bitcast <8 x i8> %bytes to <2 x i32>
  store <2 x i32> %words, ptr @out
  ret void
}
