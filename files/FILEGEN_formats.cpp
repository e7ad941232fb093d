#include "files/FILEGEN_formats.h"
