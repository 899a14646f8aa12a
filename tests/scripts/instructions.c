/* One instruction of each kind that scripts/check-instructions must report, 19 in all, and some that look like them and must
 * pass. Never run. */
__asm__(".text\n"
        "haddps %xmm0, %xmm1\n pshufb %xmm0, %xmm1\n phaddsw %xmm0, %xmm1\n pabsw %xmm0, %xmm1\n"
        "pblendw $1, %xmm0, %xmm1\n pmovzxbw %xmm0, %xmm1\n pminsd %xmm0, %xmm1\n pextrw $1, %xmm0, (%rdi)\n"
        "pcmpgtq %xmm0, %xmm1\n crc32b %al, %ecx\n popcntq (%rdi), %rax\n lzcnt %eax, %ecx\n shlx %eax, %ecx, %edx\n"
        "blsr %eax, %ecx\n movbe (%rdi), %eax\n aesenc %xmm0, %xmm1\n lock cmpxchg16b (%rdi)\n"
        "vaddps %xmm0, %xmm1, %xmm2\n vpxord %zmm0, %zmm1, %zmm2\n"

        "rep bsf %eax, %ecx\n pextrw $1, %xmm0, %eax\n pinsrw $1, %eax, %xmm0\n pmaxsw %xmm0, %xmm1\n pmaxub %xmm0, %xmm1\n"
        "pcmpgtd %xmm0, %xmm1\n pmuludq %xmm0, %xmm1\n pause\n rep stosq\n verr %ax\n andnps %xmm0, %xmm1\n");
