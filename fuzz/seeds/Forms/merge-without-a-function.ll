; shader name=a stage=kernel
; merge header=%a at=%b
