;morvane - 
include model.inc
; complete.asm: model frame

    include C:\GMAX\GAMEPACKS\FS2002\INCLUDE\MDL.INC

model_header label dword
    db  'M','D','L','8'
    dd  (model_end) - (model_header)
visual_model_header label dword
    dd  param_extension_dictionary - visual_model_header
    dd   156
    db  'F','S','8','0'
    dd  2048
visual_model_header_end  label dword

    db  'D','I','C','T'
param_extension_dictionary     label dword
    dd (param_extension_dictionary_end) - (param_extension_dictionary) - 4
    ; made by the exporter
    dict_0_gearPosition equ 144
    dd 2,144,8, 01C6B2F40h, 04A7D91E3h, 0B2C80D5Fh, 0E19A3476h

    dict_g_lightStates equ 152
    dd 2,152,4, 057F0E99Dh, 04E9C0523h, 0BB12B6BCh, 0063FE72Fh
param_extension_dictionary_end     label dword

    db  "MakeBGL - morvane ",0

model_main label BGLCODE
    BGL_BEGIN 0800h ; version = 8.00
    SHADOW_VPOSITION    AIRCRAFT_PARAMS.llapbh.lla
    VAR_BASE_OVERRIDE VAR_BASE_GLOBAL
    SHADOW_VICALL32     model_shadow,AIRCRAFT_PARAMS.llapbh.pbh
    VPOSITION    model_main_end,0,0,AIRCRAFT_PARAMS.llapbh.lla
    VINSTANCE_CALL32   model_outside,AIRCRAFT_PARAMS.llapbh.pbh
model_main_end label BGLCODE
    BGL_RETURN

model_outside label BGLCODE
; model_shadow label BGLCODE
    IFSIZEV LOD_END, 400, 0
LOD_0L    label    BGLCODE
    include C:\GMAX\EXPORT\complete_0.asm
LOD_END    label    BGLCODE
    BGL_RETURN

BGL_END
BGL_RETURN
model_end label dword
    END


