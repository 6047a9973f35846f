; Start of "ldlinux.sys". The boot sector (resources/boot_sector.asm says how) loads the first sector of
; this file, where all of .start is, and that loads the others along the chain of clusters.

        cpu 386
        bits 16

        global start, readFromDrive
        extern diskBoot, bss_start, bss_end, image_start, image_loaded_end, bootSector

; In the boot sector, from BP.
CLUSTER_SECTORS equ 13
RESERVED equ 14
SECTORS equ 19
HIDDEN equ 28
LARGE_SECTORS equ 32

; On the stack that it left, from BP.
DATA_AT equ -4
FAIL_AT equ -6

SECTOR equ 512
FIRST_OF_FAT16 equ 4085                 ; so many clusters

        section .start
start:
        jmp short .here
        db "Om"                         ; the boot sector starts nothing else
.here:  mov [read], di
        mov ebx, eax
        movzx eax, word [bp + SECTORS]
        test ax, ax
        jnz .small
        mov eax, [bp + LARGE_SECTORS]
.small: add eax, [bp + HIDDEN]
        sub eax, [bp + DATA_AT]
        jb fail
        movzx ecx, byte [bp + CLUSTER_SECTORS]
        jecxz .none
        xor edx, edx
        div ecx
        mov [clusters], eax
        xchg eax, ebx
        mov bx, image_start

; EAX = the sector that is at BX, CL = how many are left of its cluster SI, with this one.
.loaded:
        inc eax
        add bx, SECTOR
        cmp bx, image_loaded_end
        je run
        dec cl
        jnz .next
        call next_cluster
.next:  call read_one
        jmp .loaded
.none:  ret

run:
        mov esp, bootSector             ; the stack is below it
        xor eax, eax
        mov di, bss_start
        mov cx, bss_end
        sub cx, di
        rep stosb
        call dword diskBoot

; SI = the cluster behind the cluster SI, EAX = its first sector, CL = its number of sectors.
next_cluster:
        push bx
        movzx eax, si
        mov edx, eax
        call is_fat12
        jae .wide
        shr dx, 1                       ; an entry has one byte and a half
.wide:  add eax, edx
        mov bx, ax
        and bx, SECTOR - 1
        push bx
        shr eax, 9
        movzx ecx, word [bp + RESERVED]
        add eax, ecx
        add eax, [bp + HIDDEN]
        call load_table
        pop bx
        mov ax, [image_loaded_end + bx]
        call is_fat12
        jae .whole
        shr si, 1
        jnc .even
        shr ax, 4
.even:  and ax, 0x0FFF
.whole: mov si, ax
        movzx eax, si
        sub eax, byte 2
        jb fail
        cmp eax, [clusters]
        jae fail
        movzx ecx, byte [bp + CLUSTER_SECTORS]
        mul ecx
        add eax, [bp + DATA_AT]
        pop bx
        ret

; Carry set: it is.
is_fat12:
        cmp dword [clusters], FIRST_OF_FAT16
        ret

; The sector EAX and the next one to behind the image: entries of FAT12 may lie across both.
load_table:
        cmp eax, [table_sector]
        je .end
        mov [table_sector], eax
        mov bx, image_loaded_end
        call read_one
        inc eax
        add bx, SECTOR
        call read_one
.end:   ret

read_one:
        push cx
        mov cx, 1
        call [read]
        pop cx
        jc fail
        ret

fail:
        lea sp, [bp + FAIL_AT]
        ret

read: dw 0
clusters: dd 0
table_sector: dd 0

        section .text

; readFromDrive(EAX = first sector, EDX = count, ECX = physical address) -> EAX = how many were read at
; once, or FF00h and the BIOS's code.
readFromDrive:
        pushad
        mov bp, bootSector
        mov bx, cx
        and bx, byte 15
        shr ecx, 4
        mov es, cx
        mov cx, dx
        call [read]
        movzx esp, sp                   ; as behind calls of the BIOS
        push word 0
        pop ds
        push word 0
        pop es
        jnc .end
        mov ch, 0xFF
        mov cl, ah
.end:   movzx ecx, cx
        mov bp, sp
        mov [bp + 28], ecx              ; EAX that popad takes
        cld
        sti
        popad
        o32 ret

        section .note.GNU-stack noalloc noexec nowrite progbits
