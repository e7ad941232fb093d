#include "files/FILEGEN.h"
