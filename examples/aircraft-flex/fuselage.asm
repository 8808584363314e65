; fuselage.asm: model frame

    include C:\GMAX\GAMEPACKS\FS2002\INCLUDE\MDL.INC

model_header label dword
    db  'M','D','L','8'
    dd  (model_end) - (model_header)
visual_model_header label dword
    dd  0

    db  "MakeBGL - 8.00 ",0

model_main label BGLCODE
    BGL_BEGIN 0800h ; version = 8.00
    SHADOW_VPOSITION    AIRCRAFT_PARAMS.llapbh.lla
    VAR_BASE_OVERRIDE VAR_BASE_GLOBAL
    SHADOW_VICALL    model_shadow,AIRCRAFT_PARAMS.llapbh.pbh
    VPOSITION    model_main_end,0,0,AIRCRAFT_PARAMS.llapbh.lla
    VINSTANCE_CALL  model_outside,AIRCRAFT_PARAMS.llapbh.pbh
model_main_end label BGLCODE
    BGL_RETURN

model_outside label BGLCODE
model_shadow label BGLCODE
    IFSIZEV LOD_END, 400, 0
LOD_0L    label    BGLCODE
    include C:\GMAX\EXPORT\fuselage_0.asm
LOD_END    label    BGLCODE
    BGL_RETURN

BGL_END
BGL_RETURN
model_end label dword
    END
