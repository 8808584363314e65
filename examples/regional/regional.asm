; regional.asm: object frame

    include C:\GMAX\GAMEPACKS\FS2002\INCLUDE\BGL.INC
    include C:\GMAX\GAMEPACKS\FS2002\INCLUDE\MORVANE.INC

object_0 label BGLCODE
    SCALE_AGL regional_skip,0,05DCh,65536,0500DBBh,0BC83h,080E091Eh,0D448h,0,0
    INSTANCE_CALL regional_MASTER,0,0,0
regional_skip label BGLCODE
    BGL_RETURN

    include C:\GMAX\EXPORT\regional_0.asm

    END
