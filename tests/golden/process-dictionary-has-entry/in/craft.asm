include C:\GMAX\MORVANE.INC
visual_model_header label dword
    dd  param_extension_dictionary - visual_model_header
    dd   164
    db  'F','S','8','0'
    dd  2048
visual_model_header_end  label dword

    db  'D','I','C','T'
param_extension_dictionary     label dword
    dd (param_extension_dictionary_end) - (param_extension_dictionary) - 4
    dict_g_lightStates equ 152
    dd 2,152,4, 057F0E99Dh, 04E9C0523h, 0BB12B6BCh, 0063FE72Fh
    dict_0_other equ 156
    dd 2,156,8, 01h, 02h, 03h, 04h
param_extension_dictionary_end     label dword
include C:\EXPORT\craft_0.asm
END
