; Boot sector of a test floppy: makes the BIOS one that is as bad as any may be, then starts what is on
; the disk DISK, and passes it the drive number PASSED.
;
; One read goes as ever, for a master boot record. From then on there are no reads by sector number (41h
; tells of other extensions only); a read across the end of a track fails, and of the others four of
; five; behind one that failed nothing is read before a reset; and calls leave in the registers, and in
; the direction flag, what they like.

        cpu 386
        bits 16
        org 0x7C00

%ifndef DISK
%define DISK 0x80
%endif
%ifndef PASSED
%define PASSED DISK
%endif

MOVED equ 0x9000                        ; a segment for the sector, out of the way
ATTEMPTS equ 5
BAD_SECTOR equ 0x10                     ; a BIOS's code
INVALID equ 1

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
.moved: mov ah, 8
        mov dl, DISK
        int 0x13
        and cl, 0x3F
        mov [cs:track], cl
        mov eax, [0x13 * 4]
        mov [cs:bios], eax
        mov word [0x13 * 4], disk_services
        mov [0x13 * 4 + 2], cs
        xor bx, bx
        mov es, bx
        mov bx, 0x7C00
        mov ax, 0x0201
        mov cx, 1
        mov dx, DISK
        pushf
        call far [cs:bios]
        mov dl, PASSED
        jmp 0:0x7C00

disk_services:
        cmp byte [cs:is_rough], 0
        jne .rough
        test ah, 2                      ; of the functions that a start uses: 2 and 42h
        jz .pass
        mov byte [cs:is_rough], 1
.pass:  jmp far [cs:bios]

.rough: cmp ah, 0
        je .reset
        cmp ah, 2
        je .read
        cmp ah, 8
        je .geometry
        mov bx, 0xAA55
        mov cx, 6
        cmp ah, 0x41
        je .good
        mov ah, INVALID
.bad:   call spoil
        stc
        jmp .end
.good:  call spoil
        clc
.end:   sti
        std
        retf 2

.reset: mov byte [cs:needs_reset], 0
        jmp .good

.geometry:
        pushf
        call far [cs:bios]
        jc .bad
        call spoil
        mov si, 0xEEEE
        mov di, si
        mov es, si
        clc
        jmp .end

.read:  push ax
        push cx
        mov ah, INVALID
        and cl, 0x3F
        add cl, al
        dec cl
        cmp cl, [cs:track]
        ja .refused
        mov ah, BAD_SECTOR
        cmp byte [cs:needs_reset], 0
        jne .refused
        dec byte [cs:left]
        jnz .refused
        mov byte [cs:left], ATTEMPTS
        pop cx
        pop ax
        pushf
        call far [cs:bios]
        mov si, 0xEEEE
        mov ds, si
        mov es, si
        jc .bad
        jmp .good
.refused:
        mov byte [cs:needs_reset], 1
        pop cx
        add sp, 2
        jmp .bad

; The upper halves of the registers.
spoil:
%macro upper 1-*
  %rep %0
        push %1
        pop word [cs:lower]
        mov e%1, 0xEEEEEEEE
        push word [cs:lower]
        pop %1
    %rotate 1
  %endrep
%endmacro
        upper ax, bx, cx, dx, si, di
        ret

bios:   dd 0
lower:  dw 0
left:   db ATTEMPTS
track:  db 0
needs_reset: db 0
is_rough: db 0
        times 510 - ($ - $$) db 0
        dw 0xAA55
