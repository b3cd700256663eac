@in = external constant i32
@out = external global i32

define void @main() {
  %i = load i32, ptr @in
  switch i32 %i, label %never [
    i32 1, label %one
    i32 2, label %two
  ]

one:
  store i32 10, ptr @out
  ret void

two:
  store i32 20, ptr @out
  ret void

never:
  unreachable
}
