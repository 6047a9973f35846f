; Calls from 32-bit code in real mode (g++ -m16): arguments in EAX, EDX, ECX, return addresses of four
; bytes. DS, ES and SS are 0 there, and interrupts are on.

        cpu 386
        bits 16

        global biosCall, startKernel, restartPc

SETUP equ 0x1000                        ; segment of the kernel's real-mode part: low_memory.h
STACK_TOP equ 0xE000

        section .text

; biosCall(EAX = interrupt, EDX = registers) -> EAX = flags
biosCall:
        pushad
        mov [.number], al
        mov [registers], dx
        mov si, dx
        mov eax, [si]
        mov ebx, [si + 4]
        mov ecx, [si + 8]
        mov edi, [si + 20]
        push dword [si + 16]
        mov edx, [si + 12]
        pop esi
        clc
        jmp short .call                 ; the processor reads the changed instruction anew
.call:  db 0xCD
.number: db 0
        pushfd
        movzx esp, sp                   ; the compiler's code addresses by ESP, whose upper half a
                                        ; BIOS may leave as it likes
        push word 0                     ; some BIOSes change the segments
        pop ds
        push word 0
        pop es
        push esi
        mov si, [registers]
        mov [si], eax
        mov [si + 4], ebx
        mov [si + 8], ecx
        mov [si + 12], edx
        pop dword [si + 16]
        mov [si + 20], edi
        pop eax
        mov bp, sp
        mov [bp + 28], eax              ; EAX that popad takes
        cld
        sti
        popad
        o32 ret

startKernel:
        cli
        mov ax, SETUP
        mov ds, ax
        mov es, ax
        mov fs, ax
        mov gs, ax
        mov ss, ax
        mov sp, STACK_TOP
        jmp SETUP + 0x20:0

; By the keyboard controller, then by the chipset, and where both do nothing by an exception that
; nobody handles, which resets every processor. Not by the BIOS's start: it relies on a reset.
restartPc:
        cli
        xor cx, cx
.busy:  in al, 0x64                     ; the controller takes no command before the last is done
        test al, 2
        loopnz .busy
        mov al, 0xFE
        out 0x64, al
        call .wait
        mov dx, 0xCF9
        mov al, 2                       ; a whole reset, and then when
        out dx, al
        call .wait
        mov al, 6
        out dx, al
        call .wait
        lidt [no_interrupts]
        int3
.wait:  xor cx, cx
.next:  in al, 0x80
        loop .next
        ret

        section .rodata
no_interrupts:
        dw 0
        dd 0

        section .bss
registers: resw 1

        section .note.GNU-stack noalloc noexec nowrite progbits
