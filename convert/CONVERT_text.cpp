#include "convert/CONVERT_text.h"
