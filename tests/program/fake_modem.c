// Preloaded into the program's process: answers for the modem lines of a pseudo-terminal, which has none,
// from a file that a test writes. FAKE_MODEM_LINES names the file; it holds the lines as a number (TIOCM_CD
// is 64).
#define _GNU_SOURCE
#include <dlfcn.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/ioctl.h>

static int modem_lines(void) {
    int lines = 0;
    FILE* file = fopen(getenv("FAKE_MODEM_LINES"), "r");
    if (file) {
        if (fscanf(file, "%d", &lines) != 1)
            lines = 0;
        fclose(file);
    }
    return lines;
}

int ioctl(int file, unsigned long request, ...) {
    static int (*system_ioctl)(int, unsigned long, ...);
    if (!system_ioctl)
        system_ioctl = (int (*)(int, unsigned long, ...))dlsym(RTLD_NEXT, "ioctl");
    va_list arguments;
    va_start(arguments, request);
    void* argument = va_arg(arguments, void*);
    va_end(arguments);
    if (request == TIOCMGET)
        *(int*)argument = modem_lines();
    if (request == TIOCMGET || request == TIOCMSET || request == TIOCMBIS || request == TIOCMBIC)
        return 0;
    return system_ioctl(file, request, argument);
}
