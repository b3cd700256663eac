define void @main() {
entry:
  ret void
}
; shader name=a stage=kernel
; merge header=%entry
