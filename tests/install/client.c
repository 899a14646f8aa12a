/* A client in C99: says which build of the library it got, if a call gives what it should. */
#include <zelcv.h>

#include <stdio.h>

int main(void)
{
    const ZelLibVersion* version = zelcvGetLibVersion();
    const ZeliSize size = {3, 1};
    const Zel8u a[3] = {1, 200, 7}, b[3] = {4, 100, 7};
    Zel8u difference[3];
    if (zeliAbsDiff_8u_C1R(a, 3, b, 3, difference, 3, size) != zelStatusOk) return 1;
    if (difference[0] != 3 || difference[1] != 100 || difference[2] != 0) return 1;
    printf("zelcv %d.%d %.4s\n", (int)version->major, (int)version->minor, version->targetCode);
    return 0;
}
