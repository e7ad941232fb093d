#include "program/Prog_edits.h"
