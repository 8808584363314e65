; apron.asm: object frame

    include C:\GMAX\GAMEPACKS\FS2002\INCLUDE\BGL.INC

object_0 label BGLCODE
    SCALE_AGL apron_skip,0,0A0h,65536,051EDB8h,0CAAAh,0FCD9FF8Bh,07DD6h,0,0
    INSTANCE_CALL apron_MASTER,0,0,02000h
apron_skip label BGLCODE
    BGL_RETURN

    include C:\GMAX\EXPORT\apron_0.asm

    END
