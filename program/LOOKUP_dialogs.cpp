#include "program/LOOKUP_dialogs.h"
