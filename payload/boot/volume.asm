; Boot code of the volume that the installer system makes: bytes 62 to 509 of its first sector, to
; which the sector's first instruction jumps. It says what this disk is. Packages that can be
; started bring their own boot code in its place.

        cpu 386
        bits 16
        org 0x7C00 + 62

start:
        cli
        xor ax, ax
        mov ss, ax
        mov sp, 0x7C00
        sti
        mov ds, ax
        cld
        jmp 0:.here                     ; some BIOSes start it at 07C0:0000
.here:
        mov si, text
        jmp fail

text:   db 13, 10, "This disk holds packages that Omniset installed. None of them brought a boot"
        db 13, 10, "loader, so the PC cannot start from this disk yet.", 0

%include "console.inc"

        times 448 - ($ - $$) db 0
