wingG2 label BGLCODE
    CALL wingtipG2, wing
    CALL wingG2,1
wingtipG2 label BGLCODE

