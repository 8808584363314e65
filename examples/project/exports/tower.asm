; tower.asm: object frame

    include C:\GMAX\GAMEPACKS\FS2002\INCLUDE\BGL.INC

object_0 label BGLCODE
    SCALE_AGL tower_skip,0,0A0h,65536,051EDA0h,0CAAAh,0FCD9F00Bh,07DD6h,0,0
    INSTANCE_CALL tower_MASTER,0,0,00000h
tower_skip label BGLCODE
    BGL_RETURN

    include C:\GMAX\EXPORT\tower_0.asm

    END
