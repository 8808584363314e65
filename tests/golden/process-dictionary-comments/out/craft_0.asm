BGL_BEGIN 0800h ; version = 8.00
MASTER label BGLCODE
MATERIAL_LIST_BEGIN
MATERIAL_DEF 1.0,0.5,0.0,1.0, 1.0,0.5,0.0, 1.0,0.0,0.0, 0.0,0.0,0.0, 0.0 ; x
MATERIAL_DEF 0.0,0.0,0.0,1.0, 0.0,0.0,0.0, 1.0,0.0,0.0, 0.0,0.0,0.0, 0.0 ; x
MATERIAL_DEF 0.1,0.2,0.3,1.0, 0.1,0.2,0.3, 1.0,0.0,0.0, 0.0,0.0,0.0, 0.0 ; x
MATERIAL_DEF 0.5,1.0,1.0,1.0, 0.5,1.0,1.0, 1.0,0.0,0.0, 0.0,0.0,0.0, 0.0 ; x
MATERIAL_LIST_END
VERTEX_LIST_BEGIN
VERTEX_DEF 1.5,0.0,-2.25, 0.0,1.0,0.0, 0.0,0.0 ; v
VERTEX_DEF -10.125,3.0,4.0, 0.6,0.0,0.8, 0.0,0.0 ; v
VERTEX_DEF 0.000000,0.000000,0.000000, -1.0,0.0,0.0, 0.0,0.0 ; v
VERTEX_DEF 1.5,0.0,-2.25, 0.0,1.0,0.0, 0.0,0.0 ; v
VERTEX_DEF -10.125,3.0,4.0, 0.6,0.0,0.8, 0.0,0.0 ; v
VERTEX_DEF 0.000000,0.000000,0.000000, -1.0,0.0,0.0, 0.0,0.0 ; v
VERTEX_DEF 1.5,0.0,-2.25, 0.0,1.0,0.0, 0.0,0.0 ; v
VERTEX_DEF -10.125,3.0,4.0, 0.6,0.0,0.8, 0.0,0.0 ; v
VERTEX_DEF 0.000000,0.000000,0.000000, -1.0,0.0,0.0, 0.0,0.0 ; v
VERTEX_DEF 1.5,0.0,-2.25, 0.0,1.0,0.0, 0.0,0.0 ; v
VERTEX_DEF -10.125,3.0,4.0, 0.6,0.0,0.8, 0.0,0.0 ; v
VERTEX_DEF 0.000000,0.000000,0.000000, -1.0,0.0,0.0, 0.0,0.0 ; v
VERTEX_LIST_END
MATERIAL 0,0
;   No globals needed !!!! 
    IFMSK LBL1a, dict_g_lightStates , 16
;
LBL1b label BGLCODE
    VAR_BASE_OVERRIDE VAR_BASE_GLOBAL
    IFMSK LBL1a,becon2, 00100h
;
LBL1 label BGLCODE
    BGL_LIGHT LIGHT_STROBE, 1.5, 0.0, -2.25, 100 ,0.4, 0.04, 0FFFF7F00h, 0.0, 1.0, 0.0
LBL1a label BGLCODE
; DRAW_TRI_BEGIN 0, 3
; DRAW_TRI    0,   1,   2 ; poly=0 part=0
; DRAW_TRI_END
MATERIAL 1,0
;   No globals needed !!!! 
    IFMSK LBL2a, dict_g_lightStates , 16
;
LBL2b label BGLCODE
    VAR_BASE_OVERRIDE VAR_BASE_GLOBAL
    IFMSK LBL2a,becon2, 00100h
;
LBL2 label BGLCODE
    BGL_LIGHT LIGHT_STROBE, 1.5, 0.0, -2.25, 100 ,0.4, 0.04, 0FF000000h, 0.0, 1.0, 0.0
    BGL_LIGHT LIGHT_STROBE, -10.125, 3.0, 4.0, 100 ,0.4, 0.04, 0FF000000h, 0.6, 0.0, 0.8
LBL2a label BGLCODE
; DRAW_TRI_BEGIN 3, 3
; DRAW_TRI    0,   1,   2 ; poly=0 part=1
; DRAW_TRI    1,   2,   0 ; poly=1 part=1
; DRAW_TRI_END
MATERIAL 2,0
;   No globals needed !!!! 
    IFMSK LBL3a, dict_g_lightStates , 16
;
LBL3b label BGLCODE
    VAR_BASE_OVERRIDE VAR_BASE_GLOBAL
    IFMSK LBL3a,becon2, 00100h
;
LBL3 label BGLCODE
    BGL_LIGHT LIGHT_STROBE, 1.5, 0.0, -2.25, 100 ,0.4, 0.04, 0FF19334Ch, 0.0, 1.0, 0.0
LBL3a label BGLCODE
; DRAW_TRI_BEGIN 6, 3
; DRAW_TRI    0,   1,   2 ; poly=0 part=2
; DRAW_TRI_END
MATERIAL 3,0
;   No globals needed !!!! 
    IFMSK LBL4a, dict_g_lightStates , 16
;
LBL4b label BGLCODE
    VAR_BASE_OVERRIDE VAR_BASE_GLOBAL
    IFMSK LBL4a,becon2, 00100h
;
LBL4 label BGLCODE
    BGL_LIGHT LIGHT_STROBE, 1.5, 0.0, -2.25, 100 ,0.4, 0.04, 0FF7FFFFFh, 0.0, 1.0, 0.0
    BGL_LIGHT LIGHT_STROBE, -10.125, 3.0, 4.0, 100 ,0.4, 0.04, 0FF7FFFFFh, 0.6, 0.0, 0.8
LBL4a label BGLCODE
; DRAW_TRI_BEGIN 9, 3
; DRAW_TRI    0,   1,   2 ; poly=0 part=3
; DRAW_TRI    1,   2,   0 ; poly=1 part=3
; DRAW_TRI_END
BGL_END
BGL_RETURN

