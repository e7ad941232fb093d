#include "program/Prog_fields.h"
