; shader
; merge header=%rows at=%merge continue=%continue
; merge header=%columns at=%merge4 continue=%continue3
@in = external constant i32
@out = external global i32

define void @main() {
entry:
  %x = load i32, ptr @in, align 4
  br label %rows

rows:                                             ; preds = %continue, %entry
  %0 = phi i32 [ undef, %entry ], [ %1, %continue ]
  %row = phi i32 [ 0, %entry ], [ %row.next, %continue ]
  %isRow = icmp slt i32 %row, %x
  br i1 %isRow, label %rows.split, label %merge

rows.split:                                       ; preds = %rows
  br label %columns.preheader

columns.preheader:                                ; preds = %rows.split
  br label %columns

columns:                                          ; preds = %continue3, %columns.preheader
  %1 = phi i32 [ %2, %continue3 ], [ %0, %columns.preheader ]
  %column = phi i32 [ %column.next, %continue3 ], [ 0, %columns.preheader ]
  %isColumn = icmp slt i32 %column, %row
  br i1 %isColumn, label %columns.split, label %merge4

columns.split:                                    ; preds = %columns
  br label %body

body:                                             ; preds = %columns.split
  %sum = add i32 %row, %column
  %isOdd = trunc i32 %sum to i1
  %isOdd.inv = xor i1 %isOdd, true
  br i1 %isOdd, label %give, label %Flow

give:                                             ; preds = %body
  %value = mul i32 %sum, %x
  %isLarge = icmp ule i32 %value, 5
  br label %Flow

Flow:                                             ; preds = %give, %body
  %2 = phi i32 [ %value, %give ], [ %1, %body ]
  %3 = phi i1 [ true, %give ], [ false, %body ]
  %4 = phi i1 [ %isLarge, %give ], [ %isOdd.inv, %body ]
  br i1 %4, label %other, label %Flow1

other:                                            ; preds = %Flow
  store i32 %sum, ptr @out, align 4
  br label %Flow1

Flow1:                                            ; preds = %other, %Flow
  %5 = phi i1 [ false, %other ], [ %3, %Flow ]
  br i1 %5, label %use, label %columns.next

use:                                              ; preds = %Flow1
  store i32 %2, ptr @out, align 4
  br label %columns.next

columns.next:                                     ; preds = %use, %Flow1
  %column.next = add i32 %column, 1
  br label %continue3

continue3:                                        ; preds = %columns.next
  br label %columns

merge4:                                           ; preds = %columns
  br label %rows.next

rows.next:                                        ; preds = %merge4
  %row.next = add i32 %row, 1
  br label %continue

continue:                                         ; preds = %rows.next
  br label %rows

merge:                                            ; preds = %rows
  br label %end

end:                                              ; preds = %merge
  ret void
}

declare i1 @msl.leaves_from_header(i1)
