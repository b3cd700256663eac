; shader
; merge header=%loop at=%merge continue=%continue
@in = external constant i32
@out = external global i32

define void @main() {
entry:
  %n = load i32, ptr @in, align 4
  br label %loop

loop:                                             ; preds = %continue, %entry
  %parity = phi i32 [ %1, %continue ], [ 0, %entry ]
  %i = phi i32 [ 0, %entry ], [ %next, %continue ]
  %0 = icmp ne i32 %parity, 2
  br i1 %0, label %loop.split, label %merge

loop.split:                                       ; preds = %loop
  %m0 = add i32 %i, 3
  %m1 = mul i32 %m0, %n
  %m2 = xor i32 %m1, %n
  %m3 = mul i32 %m2, %n
  %m4 = xor i32 %m3, %n
  %m5 = mul i32 %m4, %n
  %m6 = xor i32 %m5, %n
  %m7 = mul i32 %m6, %n
  %m8 = xor i32 %m7, %n
  %m9 = mul i32 %m8, %n
  %m10 = xor i32 %m9, %n
  %m11 = mul i32 %m10, %n
  %m12 = xor i32 %m11, %n
  %m13 = mul i32 %m12, %n
  %m14 = xor i32 %m13, %n
  %m15 = mul i32 %m14, %n
  %m16 = xor i32 %m15, %n
  %m17 = mul i32 %m16, %n
  %m18 = xor i32 %m17, %n
  %m19 = mul i32 %m18, %n
  %next = or i32 %m19, 1
  %isDone = icmp ult i32 %next, 8
  %1 = xor i32 %parity, 1
  br i1 %isDone, label %merge, label %continue

continue:                                         ; preds = %loop.split
  br label %loop

merge:                                            ; preds = %loop, %loop.split
  %2 = phi i32 [ 0, %loop ], [ %next, %loop.split ]
  br label %end

end:                                              ; preds = %merge
  store i32 %2, ptr @out, align 4
  ret void
}
