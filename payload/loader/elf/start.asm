; Start of the ELF image. The boot ROM loads it in 32-bit protected mode, as the ELF header before it
; says, with the BIOS's interrupt table intact; from here on it runs in real mode.

        cpu 386

        global start
        extern etherboot, bss_start, bss_end, image_start

        section .start

; Room for the ELF header and the program headers: elf_image.h.
        times 180 db 0

        bits 32
start:
        cli
        cld
        mov esp, image_start            ; the stack is below the program
        lgdt [table_register]
        lidt [interrupts]
        jmp 8:.protected16

        bits 16
.protected16:
        mov ax, 16                      ; segments of 64 KB, which real mode keeps
        mov ds, ax
        mov es, ax
        mov fs, ax
        mov gs, ax
        mov ss, ax
        mov eax, cr0
        and eax, 0x7FFFFFFE             ; neither paging nor protection
        mov cr0, eax
        jmp 0:.real

        section .text
.real:
        xor eax, eax
        mov ds, ax
        mov es, ax
        mov fs, ax
        mov gs, ax
        mov ss, ax
        sti
        mov edi, bss_start
        mov cx, bss_end
        sub cx, di
        rep stosb
        call dword etherboot

        section .rodata align=8
table:
        dq 0
        dq 0x00009B000000FFFF           ; code, 64 KB from 0 on, 16 bits
        dq 0x000093000000FFFF           ; data, 64 KB from 0 on
table_register:
        dw $ - table - 1
        dd table
interrupts:
        dw 0x3FF
        dd 0

        section .note.GNU-stack noalloc noexec nowrite progbits
