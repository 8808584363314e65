; light_mast.asm: object frame

    include C:\GMAX\GAMEPACKS\FS2002\INCLUDE\BGL.INC

object_0 label BGLCODE
    SCALE_AGL light_mast_skip,0,030h,65536,051EDB8h,0,0FCD9FF8Bh,0,0,0
    INSTANCE_CALL light_mast_MASTER,0,0,0
light_mast_skip label BGLCODE
    BGL_RETURN

    include C:\GMAX\EXPORT\light_mast_0.asm

    END
