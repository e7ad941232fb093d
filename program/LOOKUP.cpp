#include "program/LOOKUP.h"
