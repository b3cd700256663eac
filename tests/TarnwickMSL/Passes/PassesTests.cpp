#include "TarnwickMSL/Translation/Passes/Forms/Text.h"
#include "TarnwickMSL/Translation/TranslationError.h"
#include "tests/TarnwickMSL/Passes/Running.h"

#include <gtest/gtest.h>

namespace tarnwick::msl::test {

// Code that must mean the same after all passes as before them.
struct Sample {
    const char* name;
    const char* assembly;
};

static const Sample samples[] = {
    {"a pointer chosen by a select",
     R"(define i32 @f(i32 %a, i32 %b) {
  %p = alloca [4 x i32]
  %q = alloca [8 x i32]
  call void @llvm.memset.p0.i32(ptr %p, i8 3, i32 16, i1 false)
  call void @llvm.memset.p0.i32(ptr %q, i8 0, i32 32, i1 false)
  %i = and i32 %a, 3
  %j = and i32 %b, 7
  %pi = getelementptr [4 x i32], ptr %p, i32 0, i32 %i
  %qj = getelementptr [8 x i32], ptr %q, i32 0, i32 %j
  %c = icmp ult i32 %a, %b
  %r = select i1 %c, ptr %pi, ptr %qj
  store i32 %b, ptr %r
  %p2 = getelementptr i32, ptr %p, i32 2
  %x = load i32, ptr %p2
  %y = load i32, ptr %r
  %q5 = getelementptr i32, ptr %q, i32 5
  %z = load i32, ptr %q5
  %s = add i32 %x, %y
  %t = add i32 %s, %z
  ret i32 %t
}
declare void @llvm.memset.p0.i32(ptr, i8, i32, i1))"},
    {"a pointer that walks over an array",
     R"(@t = internal constant [6 x i32] [i32 5, i32 7, i32 9, i32 11, i32 13, i32 2]
define i32 @f(i32 %a, i32 %b) {
entry:
  %n = urem i32 %a, 6
  %end = getelementptr i32, ptr @t, i32 1
  br label %l
l:
  %i = phi i32 [0, %entry], [%i1, %l]
  %p = phi ptr [@t, %entry], [%p1, %l]
  %s = phi i32 [%b, %entry], [%s1, %l]
  %v = load i32, ptr %p
  %s1 = add i32 %s, %v
  %p1 = getelementptr i32, ptr %p, i32 1
  %i1 = add i32 %i, 1
  %c = icmp ult i32 %i1, %n
  br i1 %c, label %l, label %e
e:
  ret i32 %s1
})"},
    {"records that are copied and indexed",
     R"(%r = type { i32, [3 x i32], float }
define i32 @f(i32 %a, i32 %b) {
  %x = alloca %r
  %y = alloca [2 x %r]
  %x1 = getelementptr %r, ptr %x, i32 0, i32 1, i32 1
  store i32 %a, ptr %x
  store i32 %b, ptr %x1
  %y0 = getelementptr [2 x %r], ptr %y, i32 0, i32 0
  %y1 = getelementptr [2 x %r], ptr %y, i32 0, i32 1
  call void @llvm.memcpy.p0.p0.i32(ptr %y0, ptr %x, i32 20, i1 false)
  store i32 %b, ptr %x
  call void @llvm.memcpy.p0.p0.i32(ptr %y1, ptr %x, i32 20, i1 false)
  %k = and i32 %b, 1
  %e = getelementptr [2 x %r], ptr %y, i32 0, i32 %k, i32 0
  %v = load i32, ptr %e
  %e1 = getelementptr [2 x %r], ptr %y, i32 0, i32 %k, i32 1, i32 1
  %w = load i32, ptr %e1
  %s = mul i32 %v, %w
  ret i32 %s
}
declare void @llvm.memcpy.p0.p0.i32(ptr, ptr, i32, i1))"},
    {"a long array that is filled",
     R"(define i32 @f(i32 %a, i32 %b) {
  %x = alloca [100 x i32]
  call void @llvm.memset.p0.i32(ptr %x, i8 1, i32 400, i1 false)
  %i = urem i32 %a, 100
  %p = getelementptr [100 x i32], ptr %x, i32 0, i32 %i
  store i32 %b, ptr %p
  %j = urem i32 %b, 100
  %q = getelementptr [100 x i32], ptr %x, i32 0, i32 %j
  %v = load i32, ptr %q
  ret i32 %v
}
declare void @llvm.memset.p0.i32(ptr, i8, i32, i1))"},
    {"a place that is found once and used under several conditions",
     R"(define i32 @f(i32 %a, i32 %b) {
entry:
  %x = alloca [9 x i32]
  call void @llvm.memset.p0.i32(ptr %x, i8 0, i32 36, i1 false)
  %i = urem i32 %a, 9
  %p = getelementptr [9 x i32], ptr %x, i32 0, i32 %i
  %c = icmp ult i32 %a, %b
  br i1 %c, label %y, label %n
y:
  %v = load i32, ptr %p
  %v1 = add i32 %v, 17
  store i32 %v1, ptr %p
  %d = icmp ult i32 %v1, 200
  br i1 %d, label %n, label %e
n:
  %o = load i32, ptr %p
  %o1 = add i32 %o, %a
  store i32 %o1, ptr %p
  %g = icmp ugt i32 %o1, 50
  br i1 %g, label %e, label %y
e:
  %j = urem i32 %b, 9
  %q = getelementptr [9 x i32], ptr %x, i32 0, i32 %j
  %r = load i32, ptr %p
  %s = load i32, ptr %q
  %t = xor i32 %r, %s
  ret i32 %t
}
declare void @llvm.memset.p0.i32(ptr, i8, i32, i1))"},
    {"a division that a loop's own test guards",
     R"(define i32 @f(i32 %a, i32 %b) {
entry:
  br label %l
l:
  %y = phi i32 [ %b, %entry ], [ %r, %body ]
  %x = phi i32 [ %a, %entry ], [ %y, %body ]
  %c = icmp eq i32 %y, 0
  br i1 %c, label %e, label %body
body:
  %r = urem i32 %x, %y
  br label %l
e:
  %z = icmp ne i32 %y, 0
  %k = zext i1 %z to i32
  %s = shl i32 %x, 1
  %t = or i32 %s, %k
  ret i32 %t
})"},
    {"values that leave a loop one round after each other",
     R"(define i32 @f(i32 %a, i32 %b) {
entry:
  br label %l
l:
  %p = phi i32 [ 1, %entry ], [ %q, %l ]
  %q = phi i32 [ %a, %entry ], [ %w, %l ]
  %i = phi i32 [ 0, %entry ], [ %n, %l ]
  %w = add i32 %p, %q
  %n = add i32 %i, 1
  %m = and i32 %b, 31
  %c = icmp ult i32 %n, %m
  br i1 %c, label %l, label %e
e:
  %s = mul i32 %q, 3
  %t = xor i32 %p, %s
  %u = sub i32 %t, %w
  ret i32 %u
})"},
    {"integers of odd widths",
     R"(define i32 @f(i32 %a, i32 %b) {
  %t = trunc i32 %a to i5
  %u = trunc i32 %b to i5
  %s = add i5 %t, %u
  %d = ashr i5 %s, 1
  %c = icmp slt i5 %d, %u
  %w = sext i5 %d to i32
  %z = zext i5 %s to i32
  %r = select i1 %c, i32 %w, i32 %z
  ret i32 %r
})"},
    {"booleans, sums that overflow, classes of floats",
     R"(define i32 @f(i32 %a, i32 %b) {
  %o = call { i32, i1 } @llvm.sadd.with.overflow.i32(i32 %a, i32 %b)
  %s = extractvalue { i32, i1 } %o, 0
  %c = extractvalue { i32, i1 } %o, 1
  %x = bitcast i32 %a to float
  %n = call i1 @llvm.is.fpclass.f32(float %x, i32 507)
  %l = trunc i32 %b to i1
  %v = insertelement <3 x i1> zeroinitializer, i1 %c, i32 0
  %w = insertelement <3 x i1> %v, i1 %n, i32 1
  %y = insertelement <3 x i1> %w, i1 %l, i32 2
  %any = bitcast <3 x i1> %y to i3
  %z = zext i3 %any to i32
  %r = xor i32 %s, %z
  ret i32 %r
}
declare { i32, i1 } @llvm.sadd.with.overflow.i32(i32, i32)
declare i1 @llvm.is.fpclass.f32(float, i32))"},
    {"helpers with references and several returns",
     R"(define internal void @swap(ptr %p, ptr %q) {
  %x = load i32, ptr %p
  %y = load i32, ptr %q
  store i32 %y, ptr %p
  store i32 %x, ptr %q
  ret void
}
define internal i32 @pick(i32 %a, i32 %b) {
  switch i32 %a, label %d [ i32 1, label %one i32 77, label %two ]
one:
  ret i32 %b
two:
  %c = icmp eq i32 %b, 9
  br i1 %c, label %one, label %d
d:
  %s = sub i32 %a, %b
  ret i32 %s
}
define i32 @f(i32 %a, i32 %b) {
  %p = alloca i32
  %q = alloca i32
  store i32 %a, ptr %p
  store i32 %b, ptr %q
  %c = icmp ugt i32 %a, %b
  br i1 %c, label %s, label %e
s:
  call void @swap(ptr %p, ptr %q)
  br label %e
e:
  %x = load i32, ptr %p
  %y = load i32, ptr %q
  %r = call i32 @pick(i32 %x, i32 %y)
  %t = call i32 @pick(i32 %r, i32 %y)
  ret i32 %t
})"},
    {"pointers that are compared and subtracted",
     R"(define i32 @f(i32 %a, i32 %b) {
entry:
  %m = alloca [4 x i32]
  %n = alloca [4 x i32]
  %i = and i32 %a, 3
  %j = and i32 %b, 1
  %isM = icmp eq i32 %j, 0
  %from = select i1 %isM, ptr %m, ptr %n
  %to = getelementptr i32, ptr %m, i32 %i
  br label %loop
loop:
  %p = phi ptr [ %from, %entry ], [ %q, %loop ]
  %k = phi i32 [ 0, %entry ], [ %l, %loop ]
  %q = getelementptr i32, ptr %p, i32 1
  %l = add i32 %k, 1
  %isThere = icmp eq ptr %p, %to
  %isLast = icmp eq i32 %l, 4
  %ends = or i1 %isThere, %isLast
  br i1 %ends, label %end, label %loop
end:
  %x = ptrtoint ptr %q to i32
  %y = ptrtoint ptr %from to i32
  %d = sub i32 %x, %y
  %null = select i1 %isM, ptr %p, ptr null
  %isNull = icmp eq ptr %null, null
  %bit = zext i1 %isNull to i32
  %r = add i32 %d, %bit
  ret i32 %r
})"},
    {"a wide product's overflow and booleans out of bits",
     R"(define i32 @f(i32 %a, i32 %b) {
  %x = zext i32 %a to i64
  %y = zext i32 %b to i64
  %z = shl i64 %y, 20
  %o = call { i64, i1 } @llvm.umul.with.overflow.i64(i64 %x, i64 %z)
  %p = extractvalue { i64, i1 } %o, 0
  %c = extractvalue { i64, i1 } %o, 1
  %t = trunc i32 %b to i3
  %v = bitcast i3 %t to <3 x i1>
  %s = select <3 x i1> %v, <3 x i32> <i32 1, i32 20, i32 300>, <3 x i32> zeroinitializer
  %s0 = extractelement <3 x i32> %s, i32 0
  %s1 = extractelement <3 x i32> %s, i32 1
  %s2 = extractelement <3 x i32> %s, i32 2
  %m = or i32 %s0, %s1
  %n = or i32 %m, %s2
  %h = lshr i64 %p, 32
  %l = trunc i64 %h to i32
  %e = zext i1 %c to i32
  %q = xor i32 %l, %n
  %r = add i32 %q, %e
  ret i32 %r
}
declare { i64, i1 } @llvm.umul.with.overflow.i64(i64, i64))"},
};

TEST(Passes, keepWhatCodeMeans) {
    for (const Sample& sample : samples) {
        SCOPED_TRACE(sample.name);
        Twins twins(sample.assembly);
        for (std::uint32_t a : {0u, 1u, 3u, 77u, 0x7f800000u, 0x7fc00001u, 0x80000001u})
            for (std::uint32_t b : {0u, 2u, 9u, 30u, 0x7ffffff3u, 0x90000005u}) {
                Outcome expected{twins.original(a, b), 0};
                EXPECT_EQ(twins.structured(a, b), expected) << a << " " << b << "\n"
                                                            << text(twins.shader);
            }
    }
}

TEST(Passes, meetBetweenStagesByName) {
    StageValue position{.name = "position", .attribute = "position", .offset = 0, .width = 4};
    StageValue color{.name = "color", .offset = 16, .scalar = Scalar::half, .width = 4};
    StageValue uv{.name = "uv", .offset = 24, .width = 2};
    EntrySignature vertex{.name = "v",
                          .symbol = "v",
                          .stage = Stage::vertex,
                          .results = {position, color, uv},
                          .resultIsRecord = true};
    EntrySignature fragment{.name = "f",
                            .symbol = "f",
                            .stage = Stage::fragment,
                            .arguments = {{.kind = ArgumentKind::stageIn, .values = {uv}}},
                            .results = {{.name = "c", .attribute = "color", .width = 4}}};
    llvm::LLVMContext context;
    auto module = parse(R"(%o = type { <4 x float>, <4 x half>, <2 x float> }
%i = type { [24 x i8], <2 x float> }
define void @v(ptr sret(%o) %r) {
  %u = getelementptr %o, ptr %r, i32 0, i32 2
  store <2 x float> <float 1.0, float 2.0>, ptr %u
  ret void
}
define <4 x float> @f(ptr byval(%i) %in) {
  %u = getelementptr %i, ptr %in, i32 0, i32 1
  %v = load <2 x float>, ptr %u
  %w = shufflevector <2 x float> %v, <2 x float> %v, <4 x i32> <i32 0, i32 1, i32 2, i32 3>
  ret <4 x float> %w
})",
                        context);
    std::vector<EntrySignature> entries{vertex, fragment};
    prepare(*module, entries);
    auto locationOf = [&](const EntrySignature& entry, const std::string& global) {
        for (const InterfaceVariable& variable : lower(*module, entry, entries).interface)
            if (variable.global == global)
                return static_cast<int>(variable.location);
        return -1;
    };
    EXPECT_EQ(locationOf(vertex, "msl.out.uv"), 1);
    EXPECT_EQ(locationOf(fragment, "msl.in.uv"), 1);
}

TEST(Passes, refuseRecursion) {
    llvm::LLVMContext context;
    auto module = parse(R"(define internal i32 @g(i32 %a) {
  %r = call i32 @g(i32 %a)
  ret i32 %r
}
define i32 @f(i32 %a, i32 %b) {
  %r = call i32 @g(i32 %a)
  ret i32 %r
})",
                        context);
    EXPECT_THROW(prepare(*module, {flatFragment()}), TranslationError);
}

TEST(Passes, keepAKernelInsideItsGrid) {
    EntrySignature kernel{.name = "k",
                          .symbol = "k",
                          .stage = Stage::kernel,
                          .arguments = {{.kind = ArgumentKind::buffer,
                                         .space = AddressSpace::device,
                                         .elementBytes = 4,
                                         .elementType = "i32"},
                                        {.kind = ArgumentKind::builtIn,
                                         .values = {{.name = "i",
                                                     .attribute = "thread_position_in_grid",
                                                     .scalar = Scalar::uint32}}}}};
    llvm::LLVMContext context;
    ShaderModule shader = lowered(R"(define void @k(ptr %out, i32 %i) {
  %v = add i32 %i, 7
  store i32 %v, ptr %out
  ret void
})",
                                  context, kernel);
    Native native(*shader.module);
    auto* position = static_cast<std::uint32_t*>(native.address("msl.in.thread_position_in_grid"));
    auto* grid = static_cast<std::uint32_t*>(native.address("msl.grid"));
    auto* out = static_cast<std::uint32_t*>(native.address("msl.buffer.0"));
    ASSERT_TRUE(position && grid && out);
    auto run = [&](std::uint32_t at) {
        *out = 0;
        position[0] = at;
        grid[0] = 10, grid[1] = grid[2] = 1;
        reinterpret_cast<void (*)()>(native.address("main"))();
        return *out;
    };
    EXPECT_EQ(run(9), 16u);
    EXPECT_EQ(run(10), 0u);
}

} // namespace tarnwick::msl::test
