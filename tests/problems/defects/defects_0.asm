BGL_BEGIN 0800h
MASTER label BGLCODE
    MATERIAL_LIST_BEGIN
    MATERIAL_DEF 1.0,0.5,0.0,1.0, 0.0,0.0,0.0, 1.0,0.0,0.0, 0.0,0.0,0.0, 0.0 ; 0
    MATERIAL_DEF 1.0,0.5,0.0,1.0, 0.0,0.0,0.0, 0.996078,0.0,0.0, 0.0,0.0,0.0, 0.0 ; !near-highlight
    MATERIAL_DEF 1,0.5,0.0,1.0, 0.0,0.0,0.0, 0.0,0.0,0.0, 0.0,0.0,0.0, 0.0 ; !real-number
    MATERIAL_DEF 1.0,0.5,0.0,1.0, 0.0,0.0,0.0, 0.0,1.0,0.0, 0.0,0.0,0.0, 0.0 ; !not-drawn
    MATERIAL_DEF 1.0,0.5,0.0,1.0, 0.0,0.0,0.0, 0.0,0.0,1.0, 0.0,0.0,0.0, 0.0 ; 4
    MATERIAL_LIST_END
    TEXTURE_LIST_BEGIN
    TEXTURE_DEF BUILDING, <255,255,255,255>, 1.0, "A.BMP" ; !texture-class
    TEXTURE_DEF TEXTURE_BUILDING, <255,255,255,255>, 1.0, "" ; !empty-text
    TEXTURE_LIST_END
    VERTEX_LIST_BEGIN
    VERTEX_DEF 0.0,0.0,0.0, 0.0,1.0,0.0, 0.0,0.0 ; 0
    VERTEX_DEF 0.0,5.0,0.0, 0.0,1.0,0.0, 0.0,0.0 ; 1
    VERTEX_DEF 0.0,5.0,2.0, 0.0,1.0,0.0, 0.0,0.0 ; 2
    VERTEX_DEF 1.0,5.0,2.0, 0.0,0.0,0.0, 0.0,0.0 ; !zero-normal
    VERTEX_DEF 1.0,5.0,2.0, 0.0,1.0,0.0, 0.0 ; !operand-count
    VERTEX_LIST_END
	MATERIAL 0,0 ; !tab-before-keyword
    MATERIAL 0,0
    DRAW_TRI_BEGIN 0, 4
    DRAW_TRI    0,   1,   2 ; poly=0 part=0
    DRAW_TRI    0,   1,   4 ; !number-beyond-list
    DRAW_TRI    0,   0,   1 ; !degenerate-triangle
    DRAW_TRI_END
    MATERIAL 4,7 ; !number-beyond-list
    DRAW_TRI_BEGIN 0, 3 ; !no-triangles
    DRAW_TRI_END
    DRAW_TRI    0,   1,   2 ; !triangle-outside-block
    DRAW_TRI_END ; !unpaired
    BGL_LIGHT *LIGHT_PANEL*, 1.0, 2.0, 3.0, 12.5 ,0.4, 0.04, FFFF8000h, 0.0, 1.0, 0.0 ; !light-type !whole-number !hexadecimal
    BGL_LIGHT LIGHT_NAV, 1.0, 2.0, 3.0, ,.4, 0.04, 0FFFF8000h, 0.0, 1.0, 0.0 ; !empty-operand !real-number
    IFMSK LBL1,beacon, 01FFFFh ; !flash-variable !number-too-wide
LBL1 label BGLCODE
LBL1 label BGLCODE ; !duplicate-label
SKIP_FX  label BGLCODE
SKIP_FX  label BGLCODE ; !skip-label
    IFMSK LBL1, dict_g_lightStates , 16 ; !undefined-dictionary-name !dictionary-slot
    KZM_FX1 "fx_smoke" , "MOY=01,12;" ; !time-constraints !macro-undefined
    KZM_FX1 "fx"smoke" , "MOY=01,12;DOM=01,31;HOD=00,23;MOH=00,59;" ; !quote-in-text
9lives label BGLCODE ; !label-name
    dd 1 ;  !control-character
café label BGLCODE ; !non-ascii
my_label_1 label BGLCODE ; !label-inside-name
BGL_END
BGL_RETURN
    KZM_WINDSOCK 0.0, 0.0, 0.0, 10.0, 3.0, 0FFF0F010h, 0FFFF8000h,1 ; !code-after-return !macro-undefined
