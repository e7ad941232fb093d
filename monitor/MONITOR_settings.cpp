#include "monitor/MONITOR.h"
