// Programs do not meet the macros of overloads.h.
#undef MSL_EACH_FLOAT
#undef MSL_EACH_HALF
#undef MSL_EACH_FLOATING
#undef MSL_EACH_LANES
#undef MSL_EACH_INTEGER_SCALAR
#undef MSL_EACH_INTEGER_VECTOR
#undef MSL_EACH_INTEGER
#undef MSL_LANES_1
#undef MSL_LANES_2
#undef MSL_LANES_3
#undef MSL_LANES_OUT
