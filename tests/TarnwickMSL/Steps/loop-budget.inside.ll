; The function has no effects but its output, so it runs on past the budget. The inner loop adds its
; rounds when it is entered; the loop of five rounds around it does not count.
; shader name=shade
; variable kind=output global=out
@in = external constant i32
@out = external global i32

define void @main() {
entry:
  %n = load i32, ptr @in
  %runs = icmp sgt i32 %n, 0
  br label %outer

outer:
  %k = phi i32 [ 0, %entry ], [ %nextK, %again ]
  %sum = phi i32 [ 0, %entry ], [ %total, %again ]
  br i1 %runs, label %before, label %again

before:
  br label %inner

inner:
  %i = phi i32 [ 0, %before ], [ %next, %inner ]
  %part = phi i32 [ %sum, %before ], [ %more, %inner ]
  %more = xor i32 %part, %i
  %next = add nuw nsw i32 %i, 1
  %goesOn = icmp slt i32 %next, %n
  br i1 %goesOn, label %inner, label %left

left:
  %found = phi i32 [ %more, %inner ]
  br label %again

again:
  %total = phi i32 [ %sum, %outer ], [ %found, %left ]
  %nextK = add nuw nsw i32 %k, 1
  %stays = icmp ult i32 %nextK, 5
  br i1 %stays, label %outer, label %end

end:
  store i32 %total, ptr @out
  ret void
}
