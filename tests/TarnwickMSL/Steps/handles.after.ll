; dead code
; shader name=shade
; texture index=2 shape=2d component=float
; texture index=5 shape=2d component=float
@in = external constant i1
@out = external global i32

define void @main() {
  %first = load i1, ptr @in, align 1
  %handle = select i1 %first, i32 2, i32 5
  %1 = call i32 @msl.width.2d(i32 2, i32 0)
  %2 = call i32 @msl.width.2d(i32 5, i32 0)
  %3 = icmp eq i32 %handle, 5
  %4 = select i1 %3, i32 %2, i32 %1
  store i32 %4, ptr @out, align 4
  ret void
}

declare i32 @msl.width.2d(i32, i32)
