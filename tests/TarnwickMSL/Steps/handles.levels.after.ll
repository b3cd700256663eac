; dead code
; shader name=shade
; texture index=2 shape=2d component=uint is_read=1 is_written=1
@in = external constant i32
@out = external global <4 x i32>

define void @main() {
  %level = load i32, ptr @in, align 4
  switch i32 %level, label %.split [
    i32 0, label %choice
    i32 1, label %choice1
    i32 2, label %choice2
    i32 3, label %choice3
    i32 4, label %choice4
    i32 5, label %choice5
    i32 6, label %choice6
    i32 7, label %choice7
    i32 8, label %choice8
    i32 9, label %choice9
    i32 10, label %choice10
    i32 11, label %choice11
    i32 12, label %choice12
    i32 13, label %choice13
    i32 14, label %choice14
  ]

choice:                                           ; preds = %0
  %1 = call <4 x i32> @msl.read.2d.u32(i32 2, <2 x i32> zeroinitializer, i32 0)
  br label %.split

choice1:                                          ; preds = %0
  %2 = call <4 x i32> @msl.read.2d.u32(i32 2, <2 x i32> zeroinitializer, i32 1)
  br label %.split

choice2:                                          ; preds = %0
  %3 = call <4 x i32> @msl.read.2d.u32(i32 2, <2 x i32> zeroinitializer, i32 2)
  br label %.split

choice3:                                          ; preds = %0
  %4 = call <4 x i32> @msl.read.2d.u32(i32 2, <2 x i32> zeroinitializer, i32 3)
  br label %.split

choice4:                                          ; preds = %0
  %5 = call <4 x i32> @msl.read.2d.u32(i32 2, <2 x i32> zeroinitializer, i32 4)
  br label %.split

choice5:                                          ; preds = %0
  %6 = call <4 x i32> @msl.read.2d.u32(i32 2, <2 x i32> zeroinitializer, i32 5)
  br label %.split

choice6:                                          ; preds = %0
  %7 = call <4 x i32> @msl.read.2d.u32(i32 2, <2 x i32> zeroinitializer, i32 6)
  br label %.split

choice7:                                          ; preds = %0
  %8 = call <4 x i32> @msl.read.2d.u32(i32 2, <2 x i32> zeroinitializer, i32 7)
  br label %.split

choice8:                                          ; preds = %0
  %9 = call <4 x i32> @msl.read.2d.u32(i32 2, <2 x i32> zeroinitializer, i32 8)
  br label %.split

choice9:                                          ; preds = %0
  %10 = call <4 x i32> @msl.read.2d.u32(i32 2, <2 x i32> zeroinitializer, i32 9)
  br label %.split

choice10:                                         ; preds = %0
  %11 = call <4 x i32> @msl.read.2d.u32(i32 2, <2 x i32> zeroinitializer, i32 10)
  br label %.split

choice11:                                         ; preds = %0
  %12 = call <4 x i32> @msl.read.2d.u32(i32 2, <2 x i32> zeroinitializer, i32 11)
  br label %.split

choice12:                                         ; preds = %0
  %13 = call <4 x i32> @msl.read.2d.u32(i32 2, <2 x i32> zeroinitializer, i32 12)
  br label %.split

choice13:                                         ; preds = %0
  %14 = call <4 x i32> @msl.read.2d.u32(i32 2, <2 x i32> zeroinitializer, i32 13)
  br label %.split

choice14:                                         ; preds = %0
  %15 = call <4 x i32> @msl.read.2d.u32(i32 2, <2 x i32> zeroinitializer, i32 14)
  br label %.split

.split:                                           ; preds = %choice14, %choice13, %choice12, %choice11, %choice10, %choice9, %choice8, %choice7, %choice6, %choice5, %choice4, %choice3, %choice2, %choice1, %choice, %0
  %16 = phi <4 x i32> [ zeroinitializer, %0 ], [ %1, %choice ], [ %2, %choice1 ], [ %3, %choice2 ], [ %4, %choice3 ], [ %5, %choice4 ], [ %6, %choice5 ], [ %7, %choice6 ], [ %8, %choice7 ], [ %9, %choice8 ], [ %10, %choice9 ], [ %11, %choice10 ], [ %12, %choice11 ], [ %13, %choice12 ], [ %14, %choice13 ], [ %15, %choice14 ]
  store <4 x i32> %16, ptr @out, align 16
  ret void
}

declare <4 x i32> @msl.read.2d.u32(i32, <2 x i32>, i32)
