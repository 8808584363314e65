; fuel_tank.asm: object frame

    include C:\GMAX\GAMEPACKS\FS2002\INCLUDE\BGL.INC

object_0 label BGLCODE
    SCALE_AGL fuel_tank_skip,0,7,32768,051EDB8h,0,0FCD9FF8Bh,0,0,0
    INSTANCE_CALL fuel_tank_MASTER,0,0,0
fuel_tank_skip label BGLCODE
    BGL_RETURN

    include C:\GMAX\EXPORT\fuel_tank_0.asm

    END
