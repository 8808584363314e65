include C:\GMAX\MORVANE.INC
visual_model_header label dword
    dd  param_extension_dictionary - visual_model_header
    dd   28
    db  'F','S','8','0'
    dd  2048
visual_model_header_end  label dword

    db  'D','I','C','T'
param_extension_dictionary     label dword
    dd (param_extension_dictionary_end) - (param_extension_dictionary) - 4
    dict_0_a equ 8
; a comment
    dd 2,8,16, 01h, 02h, 03h, 04h

    dict_0_b equ 24
    dd 2,24,4, 05h, 06h, 07h, 08h
param_extension_dictionary_end     label dword
include C:\EXPORT\craft_0.asm
END
