; shader
@in = external constant i32
@out = external global i32

define void @main() {
entry:
  %x = load i32, ptr @in, align 4
  %square = mul i32 %x, %x
  br label %loop

loop:                                             ; preds = %loop, %entry
  %i = phi i32 [ 0, %entry ], [ %next, %loop ]
  %next = add i32 %i, %square
  %goesOn = icmp ult i32 %next, %x
  br i1 %goesOn, label %loop, label %end

end:                                              ; preds = %loop
  store i32 %next, ptr @out, align 4
  ret void
}
