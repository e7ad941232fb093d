// The monitor's serial line.
#include "monitor/MONITOR.h"

#include "comm/PCOM.h"
#include "comm/line.h"

LINE* mon_comm_initialize() {
    LINE_SETTINGS settings =
        line_settings(monitor_settings.port, monitor_settings.baudrate, monitor_settings.databits,
                      monitor_settings.stopbits, monitor_settings.parity);
    settings.input_xon_xoff = monitor_settings.xon_flag == 1;
    return open_line_or_report(settings);
}
