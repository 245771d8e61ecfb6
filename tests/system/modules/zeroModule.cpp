// A library with a symbol that lies at the address 0.

__asm__(".globl kelvobaseTestAtZero\n"
        ".set kelvobaseTestAtZero, 0\n");
