#include "program/Prog_lcd.h"
