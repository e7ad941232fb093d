// Communication with the portable: settings, result codes, and the procedures that move files.
#pragma once

#include "app/TolvanP.h"

#include <cstdint>
#include <string>

struct LINE;
struct LINE_SETTINGS;

enum PARITY { NO_PARITY = 0, ODD_PARITY = 1, EVEN_PARITY = 2 };
enum PROTOCOL { PROTOCOL_NONE = 0, PROTOCOL_XMODEM = 1 };
enum FLOW { FLOW_NONE = 0, FLOW_XON_XOFF = 1, FLOW_RTS_CTS = 2 };
enum INTERFACE_MODE { INTERFACE_DIRECT = 0, INTERFACE_MODEM = 1 };
enum FILE_MODE { FILE_APPEND = 0, FILE_INCREMENT = 1 };
enum DIAL_METHOD { DIAL_TONE = 0, DIAL_PULSE = 1 };

inline constexpr std::size_t MODEM_INIT_LIMIT = 254;  // bytes
inline constexpr std::size_t PHONE_NUMBER_LIMIT = 29; // bytes
inline constexpr std::size_t XMODEM_BLOCK_SIZE = 128; // bytes
inline constexpr std::size_t FLASH_BLOCK_SIZE = 1024; // bytes

// Values come from the settings file unchecked: nothing may index by them.
struct COMM_SETTINGS {
    std::uint32_t port = 1;        // 1 to 4
    std::uint32_t baudrate = 9600; // bit/s
    std::uint32_t databits = 8;    // 7 or 8
    std::uint32_t stopbits = 1;    // 1 or 2
    std::uint32_t parity = NO_PARITY;
    std::uint32_t protocol = PROTOCOL_XMODEM;
    std::uint32_t flow_control = FLOW_RTS_CTS;
    std::uint32_t xmodem_retries = 10; // retries a block
    std::uint32_t interface_mode = INTERFACE_DIRECT;
    std::uint32_t filemode = FILE_APPEND; // naming of files in auto receive
    std::uint32_t dialmethod = DIAL_TONE;
    std::string modem_init = "AT&F&C1"; // at most MODEM_INIT_LIMIT bytes
};
extern COMM_SETTINGS comm_settings;
extern std::string phone_number; // the number last dialled; kept for the life of the process

void reset_com_setups();
void read_com_setup();
void write_com_setup();

// What the Send/Receive screen shows of the settings.
struct SETTINGS_SUMMARY {
    std::string interface_mode; // "DIRECT"
    std::string baudrate;       // "9600"
    std::string line;           // "N81"
    std::string port;           // "COM1"
    std::string protocol;       // "XMODEM"
    std::string filemode;       // "APPEND"
};
SETTINGS_SUMMARY summarize_settings(const COMM_SETTINGS& settings);

// How a transfer ended.
enum TRANSFER_RESULT {
    TRANSFER_COMPLETED = 0,
    TRANSFER_LINE_FAILED = -1,
    TRANSFER_CANCELLED = -2, // by either side
    TRANSFER_NO_CARRIER = -3,
    TRANSFER_MODEM_ERROR = -4, // reserved
    TRANSFER_DIAL_CANCELLED = -5,
    TRANSFER_FILE_ERROR = -6,
    TRANSFER_RETRIES_EXCEEDED = -7,
    TRANSFER_TIMEOUT = -8,
};
const char* transfer_status_text(int result);
const char* transfer_log_notes(int result); // nullptr when the ending is not logged

// Direction of a transfer, and the action of the Send/Receive screen, which is the Upgrade Flash screen too.
enum TRANSFER_ACTION { ACTION_UPGRADE = 0, ACTION_SEND = 1, ACTION_RECEIVE = 2 };

// --- the line (PCOM_line.cpp) ---

// Opens and configures the port of comm_settings. nullptr after it has shown its error message.
LINE* comm_initialize(int send_receive_mode);

// A line without any flow control of the driver's own; `parity` is a PARITY.
LINE_SETTINGS line_settings(std::uint32_t port, std::uint32_t baudrate, std::uint32_t databits,
                            std::uint32_t stopbits, std::uint32_t parity);

// Opens a line; nullptr after it has shown its error message.
LINE* open_line_or_report(const LINE_SETTINGS& settings);

// Always true on a direct cable; with a modem, while the carrier stands.
bool carrier_detect(LINE* port);

// Waits without pumping messages: the screen freezes meanwhile.
void delay(std::uint32_t milliseconds);

// --- the modem (PCOM_modem.cpp); all return a TRANSFER_RESULT ---

int send_modem(WINDOW screen,
               LINE* port); // asks for the number, initialises, dials, waits for the connection
int receive_modem(WINDOW screen, LINE* port); // initialises and waits for a call
void disconnect_modem(LINE* port);            // waits for the carrier to go, then hangs up

// --- the transfers (PCOM_xmodem.cpp, PCOM_ascii.cpp); all return a TRANSFER_RESULT ---

int xmodem_send_file(WINDOW screen, LINE* port, const std::string& file_name);
int xmodem_send_flash(WINDOW screen, LINE* port, const std::string& file_name);
int xmodem_receive_file(WINDOW screen, LINE* port, const std::string& file_name);
int ascii_send_file(WINDOW screen, LINE* port, const std::string& file_name);
int ascii_receive_file(WINDOW screen, LINE* port, const std::string& file_name);

// --- one send, one upgrade, one receive or a session of auto receive (PCOM_transfer.cpp) ---

void send_file(WINDOW screen, const std::string& path);
void receive_file(WINDOW screen, const std::string& path);
void upgrade_flash(WINDOW screen, const std::string& file_name);

extern bool auto_receive_flag;             // receiving again and again until the operator cancels
extern std::uint32_t auto_receive_counter; // number in the name of the next file in increment mode
bool is_increment();                       // auto receive that numbers its files

// NAME.001 for a name and the counter.
std::string increment_extension(std::uint32_t counter);

// Number of blocks of `block_size` bytes that a file of `size` bytes fills.
std::uint64_t xmodem_blocks(std::uint64_t size, std::size_t block_size);

// --- the upgrade of the portable's flash memory (PCOM_flash.cpp) ---

// True when the file's own CRC is right; reports nothing.
bool isflash_file(const std::string& file_name);

// Puts the line settings that the upgrade needs into comm_settings; port, retries and the rest stay.
void force_flash_settings();
