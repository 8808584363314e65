visual_model_header label dword
dd  0
model_outside label BGLCODE
END
