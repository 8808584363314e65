; aircraft_lights.asm: model frame

    include C:\GMAX\GAMEPACKS\FS2002\INCLUDE\MDL.INC

model_header label dword
    db  'M','D','L','8'
    dd  (model_end) - (model_header)
visual_model_header label dword
    dd  0

model_outside label BGLCODE
    include C:\GMAX\EXPORT\aircraft_lights_0.asm

model_end label dword
    END
