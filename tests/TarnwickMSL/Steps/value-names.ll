define float @wave(float %x) {
  %x.addr = alloca float, align 4
  %phase = alloca float, align 4
  store float %x, ptr %x.addr, align 4
  %1 = load float, ptr %x.addr, align 4
  %mul = fmul float %1, 2.000000e+00
  store float %mul, ptr %phase, align 4
  %2 = load float, ptr %phase, align 4
  ret float %2
}
