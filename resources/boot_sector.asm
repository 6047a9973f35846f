; Boot sector of the disks and floppies that Omniset makes, over FAT12 and FAT16. Of it only bytes 0 to
; 10 and 62 to 509 come over the sector that the format wrote, whose BIOS parameter block stays.
;
; It finds "LDLINUX SYS" in the root directory, loads the first sector of that file and starts it. The
; rest is that sector's work, with the way to read sectors that is here (payload/loader/disk/start.asm):
;
;   loaded to 0:7E00, where its first four bytes are SIGNATURE, and started there, with CS, DS, ES and SS 0
;   BP = 7C00, where this sector stays, with the drive's number in byte 36
;   [BP - 4] = where the data area begins, counted from the disk's first sector
;   EAX = where the loaded sector is, SI = its cluster
;   DI = `read`; a return goes to `fail`
;
; The volume may lie anywhere on the disk, as its hidden sectors say. Where they say something else
; than the truth, as on a volume that was formatted as a partition's and is alone on its disk, the file
; is looked for once more from the disk's first sector on.
;
; Some BIOSes pass no drive number, or that of a floppy, to what they start from a disk. Then the
; number is the one that the format wrote: 80h on disks, 0 on floppies. A BIOS that shows a USB disk as
; the first floppy loses by that, but its disk would not be one that the installer system finds.

        cpu 386
        bits 16
        org 0x7C00

SECTOR_AT equ 0x7E00
SIGNATURE equ 0x6D4F02EB                ; a jump over the letters "Om"

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
NOT_A_FILE equ 0x18                     ; attributes, behind the name: a label, or a directory

; What `read` keeps on the stack, from SI: the packet of function 42h, and registers behind it.
PACKET_PLACE equ 4
PACKET_SECTOR equ 8
KEPT_DI equ 16
KEPT_CX equ 40

UNREACHABLE equ 0xF0                    ; no BIOS's code: by cylinders the sector cannot be addressed

        jmp short start
        nop
        db "SYSLINUX"
        times 62 - ($ - $$) db 0
start:
        xor cx, cx
        mov bp, 0x7C00
        mov ss, cx
        mov sp, bp
        sti
        mov ds, cx
        mov es, cx
        cld
        test dl, dl
        jns find_file
        mov [bp + DRIVE], dl

find_file:
        mov sp, bp
        movzx eax, byte [bp + TABLES]
        mul word [bp + TABLE_SECTORS]   ; less than 64 K
        movzx ecx, word [bp + RESERVED]
        add eax, ecx
        add eax, [bp + HIDDEN]
        mov cx, [bp + ROOT_ENTRIES]
        jcxz fail                       ; FAT32
        dec cx
        shr cx, 4                       ; 16 entries are in a sector
        inc cx
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
        jne .other
        test byte [di], NOT_A_FILE
.other: popa
        je load_file
        add di, byte ENTRY_LENGTH
        jns .entry                      ; the sector ends at 8000h
        inc eax
        loop .sector

fail:
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
        cbw                             ; AH = 0: a key
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
        cmp dword [bx], SIGNATURE
        jne fail
        mov di, read
        push word fail
        push es
        push bx
        retf

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
.again: push ds
        push es
        pushad
        push dword 0                    ; the packet, from its end: sector, place, count, length
        push eax
        push es
        push bx
        push cx
        push byte 16
        mov ah, 0x41                    ; are there reads by sector number?
        mov bx, 0x55AA
        int 0x13
        jc .by_geometry
        cmp bx, 0xAA55
        jne .by_geometry
        shr cl, 1
        jnc .by_geometry
        mov si, sp
        mov ah, 0x42
        jmp short .call

.by_geometry:
        mov cl, [bp + TRACK_SECTORS]
        mov dh, [bp + HEADS]
        dec dh
        test dl, dl
        jns .known                      ; floppies are as their format says, disks as the BIOS does
        mov ah, 8
        int 0x13
        jc .done
.known: mov si, sp
        movzx edi, dh
        inc di
        xor edx, edx
        mov eax, [si + PACKET_SECTOR]
        and ecx, byte 0x3F
        stc
        jz .done
        div ecx                         ; track in EAX
        sub cx, dx                      ; so many are left of it
        cmp cx, [si + KEPT_CX]
        jae .fits
        mov [si + KEPT_CX], cx
.fits:  inc dx
        push dx                         ; counts from 1
        cdq
        div edi                         ; cylinder in EAX, head in EDX
        pop cx
        cmp eax, 1024
        jae .unreachable
        mov ch, al
        shl ah, 6
        or cl, ah
        mov dh, dl
        mov dl, [bp + DRIVE]
        mov al, [si + KEPT_CX]
        mov ah, 2
        les bx, [si + PACKET_PLACE]
.call:  int 0x13

.done:  mov [bp + STATUS], ah
        popa                            ; the packet
        popad
        pop es
        pop ds
        cld
        jnc .end
        pushad
        xor ah, ah                      ; reset
        int 0x13
        popad
        dec di
        jnz .again
        mov ah, [bp + STATUS]
        stc
.end:   ret

.unreachable:
        mov byte [si + KEPT_DI], 1      ; the last attempt
        mov ah, UNREACHABLE
        stc
        jmp .done

file_name: db "LDLINUX SYS"
failed: db "Boot failed", 13, 10

; Here partition tables are. With zeros there is none for anybody: no entry is in use, none is active
; and none tells a geometry to BIOSes that look for it there.
        times 446 - ($ - $$) db 0
        times 510 - ($ - $$) db 0
        dw 0xAA55
