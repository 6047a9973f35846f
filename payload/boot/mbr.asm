; Boot code of the master boot record: starts the active partition. The first 440 bytes of the
; disk; partition table and signature are not part of it.
;
; The BIOS loads it to 0:7C00 with the drive's number in DL. It moves itself to 0:0600, loads the
; partition's first sector to 0:7C00 and jumps to it with DL, and DS:SI is at the partition's entry.

        cpu 386
        bits 16
        org 0x600

LOADED equ 0x7C00
SIGNATURE equ 0xAA55
TABLE equ 0x600 + 446
TABLE_END equ TABLE + 4 * 16
FIRST_SECTOR equ 8                      ; in an entry of the table: counted from 0

start:
        cli
        xor ax, ax
        mov ss, ax
        mov sp, LOADED
        sti
        mov ds, ax
        mov es, ax
        cld
        mov si, LOADED
        mov di, start
        mov cx, 512 / 2
        rep movsw
        jmp 0:find_active

find_active:
        test dl, 0x80                   ; some BIOSes pass no number: then it is the first disk
        jnz .drive_known
        mov dl, 0x80
.drive_known:
        mov si, TABLE
.next:  cmp byte [si], 0x80
        je load
        add si, 16
        cmp si, TABLE_END
        jb .next
        mov si, no_active
        jmp fail

load:
        mov [si], dl                    ; kept in the entry's first byte
        mov di, 3                       ; attempts
.again: pusha
        mov ah, 0x41                    ; are there reads by sector number?
        mov bx, 0x55AA
        int 0x13
        jc read_by_geometry
        cmp bx, SIGNATURE
        jne read_by_geometry
        test cl, 1
        jz read_by_geometry
        push dword 0                    ; the packet, from its end: sector, place, count, length
        push dword [si + FIRST_SECTOR]
        push es
        push LOADED
        push 1
        push 16
        mov si, sp
        mov ah, 0x42
        int 0x13
was_read:
        mov sp, LOADED - 16             ; to what pusha left, with the carry kept
        popa
        jnc start_volume
        xor ah, ah                      ; reset
        int 0x13
        dec di
        jnz load.again
        mov si, read_error
        jmp fail

start_volume:
        cmp word [LOADED + 510], SIGNATURE
        jne .no_code
        jmp 0:LOADED
.no_code:
        mov si, not_bootable
        jmp fail

read_by_geometry:
        mov ah, 8
        int 0x13
        jc was_read
        push ds
        pop es                          ; the BIOS has changed it
        movzx edi, dh
        inc di                          ; heads
        movzx ecx, cl
        and cl, 0x3F                    ; sectors of a track
        mov eax, [si + FIRST_SECTOR]
        xor edx, edx
        div ecx
        inc dx                          ; the sector counts from 1
        mov cx, dx
        cdq
        div edi                         ; cylinder in EAX, head in EDX
        cmp ax, 1024
        cmc
        jc was_read
        mov dh, dl
        mov dl, [si]
        mov ch, al
        shl ah, 6
        or cl, ah
        mov bx, LOADED
        mov ax, 0x0201
        int 0x13
        jmp was_read

no_active: db "This disk has no active partition.", 0
read_error: db "This disk cannot be read.", 0
not_bootable: db "The active partition has no boot code.", 0

%include "console.inc"

        times 440 - ($ - $$) db 0
