// Where TolvanP.INI is kept: in the Windows folder, or, for an operator who may not write there, in the
// folder of his own application data.
#pragma once

#include <string>

// Which of the two files holds the settings, and whether it starts as a copy of the other.
enum class INI_CHOICE { WINDOWS, APPLICATION_DATA, COPY_TO_APPLICATION_DATA };

// A file that was once begun in the application data stays in use, so that it is found again by whatever
// rights the program has on another day.
INI_CHOICE choose_ini_file(bool in_application_data, bool windows_writable, bool in_windows);

// True when the file can be written, or made if there is none. Leaves no trace.
bool can_write_file(const std::string& path);

// The name to hand to the system's settings functions; chosen at the first call.
const std::string& ini_file_name();
