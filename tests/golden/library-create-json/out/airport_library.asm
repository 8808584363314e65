; Library Compiler - morvane v0.20b
; Compile with 'BGLC /BGL airport_library.asm'
; 
header label word
    dw  0001
    dd  000989D57H
    dd  0FF6914C5H
    dd  07FFFFFFFH
    dd  080B60B62H
    dw  22 dup(0)
    dd  (offset LIBRARY_DATA) - (offset header)
    dw  10 dup(0)
    dd  03C51A7E2h
    dd  04B9D06F1h
    dd  0918D4C0Bh
    dd  04F26E3A7h
    dw  14 dup(0)
LIBRARY_DATA label word
    dd  (offset LIBRARY_0) - (offset LIBRARY_DATA)
    dd  03C51A7E2h, 04B9D06F1h, 0A81E73C4h, 0DE205B96h
    dd  (offset LIBRARY_1) - (offset LIBRARY_DATA)
    dd  0918D4C0Bh, 04F26E3A7h, 0B5607D18h, 02C94F1EAh
    dd  (offset LIBRARY_2) - (offset LIBRARY_DATA)
    dd  05E07B264h, 0416CD89Fh, 09D32A5E0h, 0F71B8043h
    dd  0,6,8
    dd  (offset LIBRARY_DATA)
LIBRARY_0 label word
    dd  03C51A7E2h, 04B9D06F1h, 0A81E73C4h, 0DE205B96h
    db  100
    dd  (offset LIBRARY_0_HE) - (offset LIBRARY_0)
    dd  (offset LIBRARY_0_END) - (offset LIBRARY_0_START)
    dd  40
    dd  65536
    dd  0
    dd  0
    db "Hangar, steel, 32 x 24"
    dd 0
LIBRARY_0_HE label word
LIBRARY_0_START label word
    include hangar_0.asm
LIBRARY_0_END label word
LIBRARY_1 label word
    dd  0918D4C0Bh, 04F26E3A7h, 0B5607D18h, 02C94F1EAh
    db  60
    dd  (offset LIBRARY_1_HE) - (offset LIBRARY_1)
    dd  (offset LIBRARY_1_END) - (offset LIBRARY_1_START)
    dd  7
    dd  32768
    dd  0
    dd  0
    db "Fuel tank"
    dd 0
LIBRARY_1_HE label word
LIBRARY_1_START label word
    include fuel_tank_0.asm
LIBRARY_1_END label word
LIBRARY_2 label word
    dd  05E07B264h, 0416CD89Fh, 09D32A5E0h, 0F71B8043h
    db  80
    dd  (offset LIBRARY_2_HE) - (offset LIBRARY_2)
    dd  (offset LIBRARY_2_END) - (offset LIBRARY_2_START)
    dd  48
    dd  65536
    dd  0
    dd  0
    db "Light mast 24 m"
    dd 0
LIBRARY_2_HE label word
LIBRARY_2_START label word
    include light_mast_0.asm
LIBRARY_2_END label word
    dd 0,0,0,0
