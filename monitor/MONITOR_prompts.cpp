#include "monitor/MONITOR_screens.h"
