; The number of rounds follows from x while the loop runs.
; shader name=shade
@in = external constant i32

define void @main() {
entry:
  %first = load i32, ptr @in
  br label %loop

loop:
  %x = phi i32 [ %first, %entry ], [ %next, %loop ]
  %next = mul i32 %x, 3
  %goesOn = icmp ne i32 %next, 1
  br i1 %goesOn, label %loop, label %end

end:
  ret void
}
