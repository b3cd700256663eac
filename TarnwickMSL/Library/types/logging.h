// Logs (<metal_logging> of Metal Shading Language 3.2). A log is a start with its format, its values
// and an end, in order; the step `describe` drops all of them unless the target keeps logs.
#pragma once

#include "simdgroups.h"

namespace metal {

void _log_start(const char*) asm("msl.log_start.1");
void _log_end() asm("msl.log_end.1");
#define MSL_LOG_VALUE(T, suffix) void _log_value(T) asm("msl.log_value." suffix);
#define MSL_LOG_VALUES(T, suffix)                                                                  \
    MSL_LOG_VALUE(T, suffix) MSL_LOG_VALUE(T##2, suffix "x2")                                      \
    MSL_LOG_VALUE(T##3, suffix "x3") MSL_LOG_VALUE(T##4, suffix "x4")
MSL_LOG_VALUES(int, "s32") MSL_LOG_VALUES(uint, "u32")
MSL_LOG_VALUES(long, "s64") MSL_LOG_VALUES(ulong, "u64")
MSL_LOG_VALUES(float, "f32")
#undef MSL_LOG_VALUES
#undef MSL_LOG_VALUE

#define MSL_LOG(name)                                                                              \
    template <class... A> MSL_INLINE void name(const char* format, A... values) const {            \
        _log_start(format);                                                                        \
        (_log_value(_simd_widened(values)), ...);                                                  \
        _log_end();                                                                                \
    }
class os_log {
  public:
    constexpr os_log(const char*, const char*) {} // subsystem and category
    MSL_LOG(log) MSL_LOG(log_debug) MSL_LOG(log_info) MSL_LOG(log_error) MSL_LOG(log_fault)
};
#undef MSL_LOG
inline constexpr os_log os_log_default("", "");

// Evaluates its argument and checks nothing, as in a release build of the language's tools. A
// template, so that a program's own function of this name is a better match.
/** Computes its argument and checks nothing. */
template <class T> MSL_INLINE void assert(T) {}

} // namespace metal
