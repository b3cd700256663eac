; The branches on the mode, on a phi and on a counter, but not the loop's constant test.
; shader name=shade
; variable kind=uniform_buffer global=msl.buffer.0 element_bytes=8 is_reference=1
; variable global=msl.in.uv
; variable kind=output global=msl.out.color.0
; merge header=%entry at=%chosen
; merge header=%loop at=%end continue=%next
; merge header=%body at=%joined
; merge header=%joined at=%done
@msl.buffer.0 = external constant [2 x i32]
@msl.in.uv = external constant i32
@msl.out.color.0 = external global i32

define void @main() {
entry:
  %mode = load i32, ptr @msl.buffer.0
  %count = load i32, ptr getelementptr (i8, ptr @msl.buffer.0, i32 4)
  %x = load i32, ptr @msl.in.uv
  %isOne = icmp eq i32 %mode, 1
  br i1 %isOne, label %one, label %chosen

one:
  br label %chosen

chosen:
  %limit = phi i32 [ %count, %entry ], [ 3, %one ]
  br label %loop

loop:
  %i = phi i32 [ 0, %chosen ], [ %j, %next ]
  %goesOn = icmp ult i32 %i, 9
  br i1 %goesOn, label %body, label %end

body:
  %isBelow = icmp ult i32 %i, %limit
  br i1 %isBelow, label %below, label %joined

below:
  br label %joined

joined:
  %isLarge = icmp ugt i32 %x, %mode
  br i1 %isLarge, label %large, label %done

large:
  store i32 %i, ptr @msl.out.color.0
  br label %done

done:
  br label %next

next:
  %j = add i32 %i, 1
  br label %loop

end:
  ret void
}
