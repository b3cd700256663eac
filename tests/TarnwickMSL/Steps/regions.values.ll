; `other` separates a value of the inner loop from its use; LLVM carries it round both loops.
@in = external constant i32
@out = external global i32

define void @main() {
entry:
  %x = load i32, ptr @in
  br label %rows

rows:
  %row = phi i32 [ 0, %entry ], [ %row.next, %rows.next ]
  %isRow = icmp slt i32 %row, %x
  br i1 %isRow, label %columns, label %end

columns:
  %column = phi i32 [ 0, %rows ], [ %column.next, %columns.next ]
  %isColumn = icmp slt i32 %column, %row
  br i1 %isColumn, label %body, label %rows.next

body:
  %sum = add i32 %row, %column
  %isOdd = trunc i32 %sum to i1
  br i1 %isOdd, label %give, label %other

give:
  %value = mul i32 %sum, %x
  %isLarge = icmp ugt i32 %value, 5
  br i1 %isLarge, label %use, label %other

other:
  store i32 %sum, ptr @out
  br label %columns.next

use:
  store i32 %value, ptr @out
  br label %columns.next

columns.next:
  %column.next = add i32 %column, 1
  br label %columns

rows.next:
  %row.next = add i32 %row, 1
  br label %rows

end:
  ret void
}
