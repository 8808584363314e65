; terminal.asm: object frame

    include C:\GMAX\GAMEPACKS\FS2002\INCLUDE\BGL.INC

object_0 label BGLCODE
    SCALE_AGL terminal_skip,0,0A0h,65536,051EDC4h,0CAAAh,0FCDA012Bh,07DD6h,0,0
    INSTANCE_CALL terminal_MASTER,0,0,02000h
terminal_skip label BGLCODE
    BGL_RETURN

    include C:\GMAX\EXPORT\terminal_0.asm

    END
