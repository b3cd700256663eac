; entry name=shade symbol=shade
@count = internal unnamed_addr global i32 0, section "function_constant"
@more = internal unnamed_addr global i32 0, section "function_constant"
@llvm.global_ctors = appending global [0 x { i32, ptr, ptr }] zeroinitializer

define internal fastcc void @msl.function_constants() unnamed_addr {
  %value = call i32 @msl.function_constant.i32(i32 256)
  store i32 %value, ptr @count, align 4
  ret void
}

define internal fastcc void @start.2() unnamed_addr {
  %count = load i32, ptr @count, align 4
  %more = add i32 %count, 1
  store i32 %more, ptr @more, align 4
  ret void
}

define i32 @shade() local_unnamed_addr {
  call fastcc void @msl.function_constants()
  call fastcc void @start.2()
  %more = load i32, ptr @more, align 4
  %number = fptoui float 3.000000e+00 to i32
  %sum = add i32 %more, %number
  ret i32 %sum
}

declare i32 @msl.function_constant.i32(i32) local_unnamed_addr
