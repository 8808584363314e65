; aircraft_dictionary.asm: model frame

    include C:\GMAX\GAMEPACKS\FS2002\INCLUDE\MDL.INC

model_header label dword
    db  'M','D','L','8'
    dd  (model_end) - (model_header)
visual_model_header label dword
    dd  param_extension_dictionary - visual_model_header
    dd   164
    db  'F','S','8','0'
    dd  2048
visual_model_header_end  label dword

    db  'D','I','C','T'
param_extension_dictionary     label dword
    dd (param_extension_dictionary_end) - (param_extension_dictionary) - 4
    dict_0_gearPosition equ 136
    dd 2,136,8, 01C6B2F40h, 04A7D91E3h, 0B2C80D5Fh, 0E19A3476h
    dict_0_flapsAngle equ 144
    dd 2,144,8, 07D30E5A9h, 04B51C8F2h, 09E06A37Dh, 05F84B21Ch
    dict_g_propSpeed equ 152
    dd 2,152,8, 0A84F16D7h, 04F93BE05h, 0A6D1792Ch, 03C58E0F4h
    dict_g_lightStates equ 160
    dd 2,160,4, 057F0E99Dh, 04E9C0523h, 0BB12B6BCh, 0063FE72Fh
param_extension_dictionary_end     label dword

model_outside label BGLCODE
    include C:\GMAX\EXPORT\aircraft_dictionary_0.asm

model_end label dword
    END

