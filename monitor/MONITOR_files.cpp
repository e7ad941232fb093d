#include "monitor/MONITOR_text.h"
