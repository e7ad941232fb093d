// Keys and defaults of the shell's settings in TolvanP.INI: the main window's size and the working
// directories.
#pragma once

#include <cstdint>
#include <string>

inline constexpr std::size_t DIRECTORY_LIMIT = 255; // bytes
inline constexpr char DEFAULT_DIRECTORY[] = "C:\\Program Files\\Tolvan Programmer\\";

// The folder in which each kind of file was last chosen. File dialogs start there and store back into it; all
// eight are written when the program ends.
extern std::string prog_directory;    // program files
extern std::string data_directory;    // lookup and data files
extern std::string lib_directory;     // library files
extern std::string send_directory;    // the file to send
extern std::string receive_directory; // the file to receive into
extern std::string upgrade_directory; // the flash upgrade file
extern std::string config_directory;  // setup files
extern std::string monitor_directory; // the monitor's files

// Loads all eight. Without a program directory all are set to the default and written at once.
void read_directory_setup();
void write_directory_setup();

struct WINDOW_SIZE { // pixels
    std::uint32_t cx;
    std::uint32_t cy;
};
WINDOW_SIZE read_window_size();
bool is_window_size_stored(); // false until the program has ended once
void write_window_size(WINDOW_SIZE size);
