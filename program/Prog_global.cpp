#include "program/Prog_screens.h"
