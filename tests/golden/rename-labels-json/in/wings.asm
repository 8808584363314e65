wing label BGLCODE
    CALL wingtip, wing
    CALL wing,1
wingtip label BGLCODE
