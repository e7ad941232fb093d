#include "files/FILEGEN_edits.h"
