#include "files/MEMORY.h"
