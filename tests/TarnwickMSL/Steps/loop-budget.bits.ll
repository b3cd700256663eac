; The limit of the first loop has at most four bits, so only the second loop counts.
; shader name=shade
@in = external constant i32

define void @main() {
entry:
  %x = load i32, ptr @in
  %some = urem i32 %x, 7
  %limit = add nuw nsw i32 %some, 3
  br label %loop

loop:
  %i = phi i32 [ 0, %entry ], [ %next, %rest ]
  %y = mul i32 %x, %i
  %isFound = icmp eq i32 %y, 20
  br i1 %isFound, label %more, label %rest

rest:
  %next = add nuw nsw i32 %i, 1
  %goesOn = icmp ugt i32 %limit, %next
  br i1 %goesOn, label %loop, label %more

more:
  %z = phi i32 [ %x, %rest ], [ %x, %loop ], [ %triple, %more ]
  %triple = mul i32 %z, 3
  %isOpen = icmp ne i32 %triple, 1
  br i1 %isOpen, label %more, label %end

end:
  ret void
}
