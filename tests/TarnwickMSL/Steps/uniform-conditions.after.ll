; shader name=shade
; variable kind=uniform_buffer global=msl.buffer.0 element_bytes=8 is_reference=1
; variable global=msl.in.uv
; variable kind=output global=msl.out.color.0
; variable global=msl.in.position built_in=position
; merge header=%entry at=%chosen
; merge header=%loop at=%end continue=%next
; merge header=%body at=%joined
; merge header=%joined at=%done
@msl.buffer.0 = external constant [2 x i32]
@msl.in.uv = external constant i32
@msl.out.color.0 = external global i32
@msl.in.position = external constant <4 x float>

define void @main() {
entry:
  %0 = load <4 x float>, ptr @msl.in.position, align 16
  %1 = extractelement <4 x float> %0, i64 0
  %2 = fcmp olt float %1, 0.000000e+00
  %mode = load i32, ptr @msl.buffer.0, align 4
  %count = load i32, ptr getelementptr (i8, ptr @msl.buffer.0, i32 4), align 4
  %x = load i32, ptr @msl.in.uv, align 4
  %isOne = icmp eq i32 %mode, 1
  %3 = or i1 %isOne, %2
  br i1 %3, label %one, label %chosen

one:                                              ; preds = %entry
  br label %chosen

chosen:                                           ; preds = %one, %entry
  %limit = phi i32 [ %count, %entry ], [ 3, %one ]
  br label %loop

loop:                                             ; preds = %next, %chosen
  %i = phi i32 [ 0, %chosen ], [ %j, %next ]
  %goesOn = icmp ult i32 %i, 9
  br i1 %goesOn, label %body, label %end

body:                                             ; preds = %loop
  %isBelow = icmp ult i32 %i, %limit
  br i1 %isBelow, label %below, label %joined

below:                                            ; preds = %body
  br label %joined

joined:                                           ; preds = %below, %body
  %isLarge = icmp ugt i32 %x, %mode
  br i1 %isLarge, label %large, label %done

large:                                            ; preds = %joined
  store i32 %i, ptr @msl.out.color.0, align 4
  br label %done

done:                                             ; preds = %large, %joined
  br label %next

next:                                             ; preds = %done
  %j = add i32 %i, 1
  br label %loop

end:                                              ; preds = %loop
  ret void
}
