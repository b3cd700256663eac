; A loop that nothing leaves gets an exit that is never taken.
define void @main() {
  br label %loop

loop:
  br label %loop
}
