; shader
define void @main() {
  br label %loop

loop:                                             ; preds = %loop, %0
  br i1 true, label %loop, label %end

end:                                              ; preds = %loop
  ret void
}
