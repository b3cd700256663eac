// Matrix functions (Metal Shading Language 3.1, 6.7).
#pragma once

#include "geometric.h"

namespace metal {

template <class T, int C, int R> MSL_INLINE vec<T, C> _row(matrix<T, C, R> m, int i) {
    if constexpr (C == 2)
        return {m.columns[0][i], m.columns[1][i]};
    else if constexpr (C == 3)
        return {m.columns[0][i], m.columns[1][i], m.columns[2][i]};
    else
        return {m.columns[0][i], m.columns[1][i], m.columns[2][i], m.columns[3][i]};
}

/** The matrix with rows and columns exchanged. */
template <class T, int C, int R> MSL_INLINE matrix<T, R, C> transpose(matrix<T, C, R> m) {
    matrix<T, R, C> turned;
    turned.columns[0] = _row(m, 0);
    turned.columns[1] = _row(m, 1);
    if constexpr (R > 2)
        turned.columns[2] = _row(m, 2);
    if constexpr (R > 3)
        turned.columns[3] = _row(m, 3);
    return turned;
}

/** The determinant of a square matrix. */
template <class T> MSL_INLINE T determinant(matrix<T, 2, 2> m) {
    return m.columns[0].x * m.columns[1].y - m.columns[1].x * m.columns[0].y;
}
template <class T> MSL_INLINE T determinant(matrix<T, 3, 3> m) {
    return dot(m.columns[0], cross(m.columns[1], m.columns[2]));
}
// By the 2 x 2 minors of the upper two and the lower two rows.
template <class T> MSL_INLINE T determinant(matrix<T, 4, 4> m) {
    vec<T, 4> a = m.columns[0], b = m.columns[1], c = m.columns[2], d = m.columns[3];
    T ab = a.x * b.y - b.x * a.y, ac = a.x * c.y - c.x * a.y, ad = a.x * d.y - d.x * a.y;
    T bc = b.x * c.y - c.x * b.y, bd = b.x * d.y - d.x * b.y, cd = c.x * d.y - d.x * c.y;
    T lowCD = c.z * d.w - d.z * c.w, lowBD = b.z * d.w - d.z * b.w, lowBC = b.z * c.w - c.z * b.w;
    T lowAD = a.z * d.w - d.z * a.w, lowAC = a.z * c.w - c.z * a.w, lowAB = a.z * b.w - b.z * a.w;
    return ab * lowCD - ac * lowBD + ad * lowBC + bc * lowAD - bd * lowAC + cd * lowAB;
}

} // namespace metal
