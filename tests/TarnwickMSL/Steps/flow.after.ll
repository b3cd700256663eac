; shader
@in = external constant i32
@out = external global i32

define void @main() {
  %i = load i32, ptr @in, align 4
  br label %NodeBlock

NodeBlock:                                        ; preds = %0
  %Pivot = icmp slt i32 %i, 2
  br i1 %Pivot, label %LeafBlock, label %LeafBlock1

LeafBlock1:                                       ; preds = %NodeBlock
  %SwitchLeaf2 = icmp eq i32 %i, 2
  br i1 %SwitchLeaf2, label %two, label %never

LeafBlock:                                        ; preds = %NodeBlock
  %SwitchLeaf = icmp eq i32 %i, 1
  br i1 %SwitchLeaf, label %one, label %never

one:                                              ; preds = %LeafBlock
  store i32 10, ptr @out, align 4
  br label %end

two:                                              ; preds = %LeafBlock1
  store i32 20, ptr @out, align 4
  br label %end

never:                                            ; preds = %LeafBlock1, %LeafBlock
  br label %end

end:                                              ; preds = %never, %two, %one
  ret void
}
