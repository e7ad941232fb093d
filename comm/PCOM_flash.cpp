// Upgrade files of the portable's flash memory.
#include "comm/PCOM.h"

bool isflash_file(const std::string&) {
    return false;
}

void upgrade_flash(WINDOW, const std::string&) {}
