; A set with defects. Each line that has one says so behind "; !".
    include C:\GMAX\INCLUDE\BGL.INC
    include  _0.asm ; !include-nameless
object_0 label BGLCODE
    SCALE_AGL object_skip,0,0A0h,65536,5369272,07DD6h,0FCD9FF8Bh,07DD6h,0,0 ; !reference-hexadecimal
    INSTANCE_CALL MASTER,0,0,0
object_skip label BGLCODE
    BGL_RETURN
    SCALE_AGL object_gone,0,0A0h,0,051EDB8h,07DD6h,0FCD9FF8Bh,07DD6h,0,0 ; !reference-twice !reference-scale !undefined-label
    include C:\GMAX\EXPORT\defects_0.asm ; !missing-end
