; shader name=shade
; texture index=2 shape=2d component=float
; texture index=5 shape=2d component=float
@in = external constant i1
@out = external global i32

define void @main() {
  %first = load i1, ptr @in
  %handle = select i1 %first, i32 2, i32 5
  %width = call i32 @msl.width.2d(i32 %handle, i32 0)
  store i32 %width, ptr @out
  ret void
}

declare i32 @msl.width.2d(i32, i32)
