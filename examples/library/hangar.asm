; hangar.asm: object frame

    include C:\GMAX\GAMEPACKS\FS2002\INCLUDE\BGL.INC

object_0 label BGLCODE
    SCALE_AGL hangar_skip,0,41,65536,051EDB8h,0,0FCD9FF8Bh,0,0,0
    INSTANCE_CALL hangar_MASTER,0,0,0
hangar_skip label BGLCODE
    BGL_RETURN

    include C:\GMAX\EXPORT\hangar_0.asm

    END
