; Start of the network boot program, and calls of the boot ROM.
;
; The ROM loads it to 0:7C00 and starts it with ES:BX at its structure "PXENV+", and with the address
; of its structure "!PXE" behind the return address on the stack.

        cpu 386
        bits 16

        global start, romCall, romEntry, oldStructureAt, newStructureAt
        extern networkBoot, bss_start, bss_end, image_start

        section .start
start:
        jmp 0:.here

        section .text
.here:  cld
        mov bp, sp
        mov ecx, [ss:bp + 4]            ; "!PXE"
        xor eax, eax
        mov dx, es
        mov ds, ax
        mov es, ax
        mov di, bss_start
        cli
        mov ss, ax
        mov esp, image_start            ; the stack is below the program
        sti
        shl edx, 16
        mov dx, bx
        mov ebx, ecx
        mov cx, bss_end
        sub cx, di
        rep stosb
        mov [oldStructureAt], edx
        mov [newStructureAt], ebx
        call dword networkBoot

; romCall(EAX = function, EDX = parameters) -> EAX = 0 when all is well.
; An entry of the new kind takes its arguments from the stack, one of the old kind from registers.
romCall:
        pushad
        mov di, dx
        mov bx, ax
        push word 0
        push dx
        push ax
        call far [romEntry]
        add sp, 6
        movzx esp, sp                   ; as behind calls of the BIOS
        push word 0                     ; some ROMs change the segments
        pop ds
        push word 0
        pop es
        movzx eax, ax
        mov bp, sp
        mov [bp + 28], eax              ; EAX that popad takes
        cld
        sti
        popad
        o32 ret

        section .bss
romEntry: resd 1
oldStructureAt: resd 1
newStructureAt: resd 1

        section .note.GNU-stack noalloc noexec nowrite progbits
