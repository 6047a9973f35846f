; Boot sector of a test floppy: makes the BIOS one without reads by sector number (INT 13h functions
; 41h and 42h fail, as on old PCs), then starts the first disk's master boot record.

        cpu 386
        bits 16
        org 0x7C00

MOVED equ 0x9000                        ; a segment for the sector, out of the way

        cli
        xor ax, ax
        mov ss, ax
        mov sp, 0x7C00
        sti
        mov ds, ax
        cld
        mov ax, MOVED
        mov es, ax
        mov si, 0x7C00
        mov di, si
        mov cx, 256
        rep movsw
        jmp MOVED:.moved
.moved: mov eax, [0x13 * 4]
        mov [cs:bios], eax
        mov word [0x13 * 4], disk_services
        mov [0x13 * 4 + 2], cs
        mov es, cx
        mov bx, 0x7C00
        mov ax, 0x0201
        mov cx, 1
        mov dx, 0x80
        int 0x13
        jmp 0:0x7C00

disk_services:
        cmp ah, 0x41
        je .none
        cmp ah, 0x42
        je .none
        jmp far [cs:bios]
.none:  mov ah, 1
        push bp
        mov bp, sp
        or byte [bp + 6], 1             ; carry of the flags on the stack
        pop bp
        iret

bios:   dd 0
        times 510 - ($ - $$) db 0
        dw 0xAA55
