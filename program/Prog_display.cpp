#include "program/Prog_display.h"
