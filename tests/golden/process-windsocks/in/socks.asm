include C:\GMAX\MORVANE.INC
visual_model_header label dword
dd  0
model_outside label BGLCODE
include C:\EXPORT\socks_0.asm
END
