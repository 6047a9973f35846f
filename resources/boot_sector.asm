; Boot sector of the disks and floppies that Omniset makes, over FAT12 and FAT16. Of it only bytes 0 to
; 10 and 62 to 509 come over the sector that the format wrote, whose BIOS parameter block stays.
;
; It finds "LDLINUX SYS" in the root directory, loads the first sector of that file and starts it. The
; rest is that sector's work, with the way to read sectors that is here (payload/loader/disk/start.asm):
;
;   loaded to 0:7E00 and started there, with CS, DS, ES and SS 0
;   BP = 7C00, where this sector stays, with the drive's number in byte 36
;   [BP - 4] = where the data area begins, counted from the disk's first sector
;   EAX = where the loaded sector is, SI = its cluster
;   DI = `read`; a return goes to `fail`
;
; The volume may lie anywhere on the disk, as its hidden sectors say. Where they say something else
; than the truth, as on a volume that was formatted as a partition's and is alone on its disk, the file
; is looked for once more from the disk's first sector on.

        cpu 386
        bits 16
        org 0x7C00

SECTOR_AT equ 0x7E00

; In the BIOS parameter block, from BP.
CLUSTER_SECTORS equ 13
RESERVED equ 14
TABLES equ 16
ROOT_ENTRIES equ 17
TABLE_SECTORS equ 22
TRACK_SECTORS equ 24
HEADS equ 26
HIDDEN equ 28
DRIVE equ 36
STATUS equ 37                           ; of the BIOS; unused by the format

DATA_AT equ -4

; In an entry of a directory.
NAME_LENGTH equ 11
FIRST_CLUSTER equ 26
ENTRY_LENGTH equ 32

        jmp short start
        nop
        db "SYSLINUX"
        times 62 - ($ - $$) db 0
start:
        cli
        xor cx, cx
        mov ss, cx
        mov bp, 0x7C00
        mov sp, bp
        sti
        mov ds, cx
        mov es, cx
        cld
        mov [bp + DRIVE], dl

find_file:
        mov sp, bp
        movzx eax, byte [bp + TABLES]
        movzx ecx, word [bp + TABLE_SECTORS]
        mul ecx
        mov cx, [bp + RESERVED]
        add eax, ecx
        add eax, [bp + HIDDEN]
        mov cx, [bp + ROOT_ENTRIES]
        add ecx, byte 15
        shr ecx, 4                      ; 16 entries are in a sector
        lea edx, [eax + ecx]
        push edx                        ; DATA_AT
        mov bx, SECTOR_AT

.sector:
        push cx
        call read_one
        pop cx
        mov di, bx
.entry: mov si, file_name
        pusha
        mov cx, NAME_LENGTH
        repe cmpsb
        popa
        je load_file
        add di, byte ENTRY_LENGTH
        cmp di, SECTOR_AT + 512
        jb .entry
        inc eax
        loop .sector

fail:
        mov bp, 0x7C00
        xor eax, eax
        xchg eax, [bp + HIDDEN]
        test eax, eax
        jnz find_file

        mov si, failed
.next:  lodsb
        mov ah, 0x0E
        mov bx, 7
        int 0x10
        cmp al, 10
        jne .next
        xor ax, ax                      ; a key
        int 0x16
        jmp 0xFFFF:0

load_file:
        movzx eax, word [di + FIRST_CLUSTER]
        mov si, ax
        sub eax, byte 2                 ; an empty file has no cluster
        jb fail
        movzx ecx, byte [bp + CLUSTER_SECTORS]
        mul ecx
        add eax, [bp + DATA_AT]
        call read_one
        mov di, read
        push word fail
        jmp 0:SECTOR_AT

read_one:
        mov cx, 1
        call read
        jc fail
        ret

; Reads from the sector EAX on up to CX sectors to ES:BX, as many as the BIOS reads at once: CX tells
; how many. Carry set: not even with repetitions, and AH is the BIOS's code. DL and DI are changed.
; The memory must not cross a boundary of 64 KB.
read:
        mov dl, [bp + DRIVE]
        mov di, 5                       ; attempts
.again: pushad
        push dword 0                    ; the packet, from its end: sector, place, count, length
        push eax
        push es
        push bx
        push cx
        push byte 16
        mov ah, 0x41                    ; are there reads by sector number?
        mov bx, 0x55AA
        int 0x13
        mov si, sp
        jc .by_geometry
        cmp bx, 0xAA55
        jne .by_geometry
        shr cl, 1
        jnc .by_geometry
        mov ah, 0x42
        int 0x13
        jmp short .done

.by_geometry:
        movzx ecx, word [bp + TRACK_SECTORS]
        mov dh, [bp + HEADS]
        dec dh
        test dl, dl
        jns .known                      ; floppies are as their format says, disks as the BIOS does
        mov ah, 8
        int 0x13
        jc .done
        and ecx, byte 0x3F
.known: movzx edi, dh
        inc di
        mov eax, [si + 8]
        xor edx, edx
        stc
        jecxz .done
        div ecx                         ; track in EAX
        sub cx, dx                      ; so many are left of it
        cmp cx, [si + 16 + 24]
        jae .fits
        mov [si + 16 + 24], cx          ; the caller's CX
.fits:  inc dx
        push dx                         ; counts from 1
        xor edx, edx
        div edi                         ; cylinder in EAX, head in EDX
        pop cx
        cmp eax, 1024
        cmc
        jc .done
        mov ch, al
        shl ah, 6
        or cl, ah
        mov dh, dl
        mov dl, [bp + DRIVE]
        mov al, [si + 16 + 24]
        mov ah, 2
        les bx, [si + 4]
        int 0x13

.done:  pop cx
        pop cx
        pop bx
        pop es
        pop ecx
        pop ecx
        mov [bp + STATUS], ah
        popad
        jnc .end
        pusha
        xor ah, ah                      ; reset
        int 0x13
        popa
        dec di
        jnz .again
        mov ah, [bp + STATUS]
        stc
.end:   ret

file_name: db "LDLINUX SYS"
failed: db "Boot failed", 13, 10

; Here partition tables are. With zeros there is none for anybody: no entry is in use, none is active
; and none tells a geometry to BIOSes that look for it there.
        times 446 - ($ - $$) db 0
        times 510 - ($ - $$) db 0
        dw 0xAA55
