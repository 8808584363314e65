include C:\GMAX\MORVANE.INC
visual_model_header label dword
dd  param_extension_dictionary - visual_model_header
    dd   156
    db  'F','S','8','0'
    dd  2048
visual_model_header_end  label dword
  
    db  'D','I','C','T'
param_extension_dictionary     label dword
    dd (param_extension_dictionary_end) - (param_extension_dictionary) - 4
    dict_g_lightStates equ 152
    dd 2,152,4, 057F0E99Dh, 04E9C0523h, 0BB12B6BCh, 0063FE72Fh
param_extension_dictionary_end     label dword
model_outside label BGLCODE
include C:\EXPORT\lamps_0.asm
END

