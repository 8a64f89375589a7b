// What must not disturb the registers of a call: sending messages, and the ways between the phone's
// calling convention and this system's. Every frame has its records, for exceptions to pass.

// All registers that may hold an argument, and where a large result goes (x8).
.macro SAVE_ARGUMENTS
    stp x29, x30, [sp, #-16]!
    .cfi_def_cfa_offset 16
    .cfi_offset x29, -16
    .cfi_offset x30, -8
    mov x29, sp
    .cfi_def_cfa x29, 16
    sub sp, sp, #208
    stp x0, x1, [sp]
    stp x2, x3, [sp, #16]
    stp x4, x5, [sp, #32]
    stp x6, x7, [sp, #48]
    str x8, [sp, #64]
    stp q0, q1, [sp, #80]
    stp q2, q3, [sp, #112]
    stp q4, q5, [sp, #144]
    stp q6, q7, [sp, #176]
.endm

.macro RESTORE_ARGUMENTS
    ldp x0, x1, [sp]
    ldp x2, x3, [sp, #16]
    ldp x4, x5, [sp, #32]
    ldp x6, x7, [sp, #48]
    ldr x8, [sp, #64]
    ldp q0, q1, [sp, #80]
    ldp q2, q3, [sp, #112]
    ldp q4, q5, [sp, #144]
    ldp q6, q7, [sp, #176]
    mov sp, x29
    .cfi_def_cfa sp, 16
    ldp x29, x30, [sp], #16
    .cfi_def_cfa_offset 0
    .cfi_restore x29
    .cfi_restore x30
.endm

.macro FUNCTION name
    .globl \name
    .hidden \name
    .type \name, %function
    .p2align 2
\name:
    .cfi_startproc
.endm

.macro END name
    .cfi_endproc
    .size \name, . - \name
.endm

    .text

// id objc_msgSend(id self, SEL selector, ...)
FUNCTION emulatorMessageSend
    cbz x0, 1f
    SAVE_ARGUMENTS
    bl emulatorLookUp
    mov x16, x0
    RESTORE_ARGUMENTS
    br x16
1:  mov x1, #0          // x0 is nil; so is whatever kind of result a caller expects
    movi d0, #0
    movi d1, #0
    movi d2, #0
    movi d3, #0
    ret
END emulatorMessageSend

// id objc_msgSendSuper2(struct {id self; Class current}*, SEL selector, ...)
FUNCTION emulatorMessageSendSuper
    SAVE_ARGUMENTS
    bl emulatorLookUpSuper
    mov x16, x0
    RESTORE_ARGUMENTS
    ldr x0, [x0]
    br x16
END emulatorMessageSendSuper

// The phone's variadic arguments all lie on the stack: the functions that take their place get its
// address behind the last named argument.
FUNCTION emulatorVariadicMessage
    mov x3, sp
    b emulatorFormatMessage
END emulatorVariadicMessage

FUNCTION emulatorVariadicRaise
    mov x4, sp
    b emulatorRaiseFormat
END emulatorVariadicRaise

FUNCTION emulatorVariadicLog
    mov x1, sp
    b emulatorLog
END emulatorVariadicLog

FUNCTION emulatorVariadicSnprintf
    mov x3, sp
    b emulatorSnprintf
END emulatorVariadicSnprintf

// Calls the function in x16 and widens its result, which is smaller than a register, by the kind in
// x17: the phone's compiler takes for granted that the callee did. 64 bytes of arguments on the
// stack are passed on.
FUNCTION emulatorCallForSmallResult
    stp x29, x30, [sp, #-32]!
    .cfi_def_cfa_offset 32
    .cfi_offset x29, -32
    .cfi_offset x30, -24
    mov x29, sp
    .cfi_def_cfa x29, 32
    str x17, [sp, #16]
    sub sp, sp, #64
    ldp q16, q17, [x29, #32]
    stp q16, q17, [sp]
    ldp q16, q17, [x29, #64]
    stp q16, q17, [sp, #32]
    blr x16
    ldr x17, [x29, #16]
    mov sp, x29
    .cfi_def_cfa sp, 32
    ldp x29, x30, [sp], #32
    .cfi_def_cfa_offset 0
    .cfi_restore x29
    .cfi_restore x30
    cmp x17, #2         // SmallType's order
    b.lo 1f
    b.eq 2f
    cmp x17, #4
    b.lo 3f
    b.eq 4f
    uxth w0, w0
    ret
1:  tst w0, #0xff
    cset w0, ne
    ret
2:  sxtb w0, w0
    ret
3:  uxtb w0, w0
    ret
4:  sxth w0, w0
    ret
END emulatorCallForSmallResult

// Calls the constructor or destructor in x16 and returns the object: the phone's compiler takes for
// granted that they do.
FUNCTION emulatorCallReturningThis
    stp x29, x30, [sp, #-32]!
    .cfi_def_cfa_offset 32
    .cfi_offset x29, -32
    .cfi_offset x30, -24
    str x0, [sp, #16]
    blr x16
    ldr x0, [sp, #16]
    ldp x29, x30, [sp], #32
    .cfi_def_cfa_offset 0
    .cfi_restore x29
    .cfi_restore x30
    ret
END emulatorCallReturningThis

    .section .note.GNU-stack, "", %progbits
