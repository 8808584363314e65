; chimney.asm: object frame

    include C:\GMAX\GAMEPACKS\FS2002\INCLUDE\BGL.INC

object_0 label BGLCODE
    SCALE_AGL chimney_skip,0,40,65536,051EDB8h,0,0FCD9FF8Bh,0,0,0
    INSTANCE_CALL chimney_MASTER,0,0,0
chimney_skip label BGLCODE
    BGL_RETURN

    include C:\GMAX\EXPORT\chimney_0.asm

    END
