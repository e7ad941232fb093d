#include "files/FILEGEN_import.h"
