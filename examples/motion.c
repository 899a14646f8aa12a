/* Where did something move? The absolute difference of two frames, in C99.
 *
 *     cc -std=c99 motion.c $(pkg-config --cflags --libs zelcv) -o motion
 */
#include <zelcv.h>

#include <stdio.h>
#include <string.h>

enum { WIDTH = 48, HEIGHT = 16, STEP = 64 }; /* rows are 64 bytes apart, of which the first 48 are pixels */

static void drawFrame(Zel8u* frame, int left, int top)
{
    int y;
    memset(frame, 40, STEP * HEIGHT);
    for (y = top; y < top + 6; ++y) memset(frame + y * STEP + left, 200, 10);
}

int main(void)
{
    const ZeliSize size = {WIDTH, HEIGHT};
    Zel8u* frames = zelMalloc(3 * STEP * HEIGHT); /* any memory will do; this one starts on a cache line */
    Zel8u *before = frames, *after = frames + STEP * HEIGHT, *difference = frames + 2 * STEP * HEIGHT;
    ZelStatus status;
    int x, y;

    if (!frames) return 1;
    drawFrame(before, 12, 4);
    drawFrame(after, 18, 6);
    status = zeliAbsDiff_8u_C1R(before, STEP, after, STEP, difference, STEP, size);
    if (status < 0) {
        fprintf(stderr, "motion: %s\n", zelGetStatusString(status));
        zelFree(frames);
        return 1;
    }
    printf("zelcv %s, built for %.4s: what changed\n", zelcvGetLibVersion()->version, zelcvGetLibVersion()->targetCode);
    for (y = 0; y < HEIGHT; ++y) {
        for (x = 0; x < WIDTH; ++x) putchar(difference[y * STEP + x] > 50 ? '#' : '.');
        putchar('\n');
    }
    zelFree(frames);
    return 0;
}
