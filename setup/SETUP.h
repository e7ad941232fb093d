// The portable's setup: one record, edited in place by the setup dialogs, and its file (".CFT").
#pragma once

#include <cstdint>
#include <string>

// One byte each. Indexes count from 0; times marked tenths are tenths of a second.
struct SETUP_RECORD {
    std::uint8_t C39FLAGS; // flags of the symbologies: bit 0 allows decoding
    std::uint8_t UPCFLAGS;
    std::uint8_t EANFLAGS;
    std::uint8_t SUPFLAGS;
    std::uint8_t I25FLAGS;
    std::uint8_t I25_FL_1; // fixed sizes, 0 to 60 in even steps
    std::uint8_t I25_FL_2;
    std::uint8_t I25_FL_3;
    std::uint8_t CDBRFLAGS;
    std::uint8_t C128FLAGS;
    std::uint8_t C93FLAGS;
    std::uint8_t MSIFLAGS;
    std::uint8_t C11FLAGS;
    std::uint8_t BTERM;   // index: termination character
    std::uint8_t USRTERM; // character code of the user's termination
    std::uint8_t BARONLY;
    std::uint8_t PREAMBLEBD;  // tenths
    std::uint8_t POSTAMBLEBD; // tenths
    std::uint8_t BEDIT;
    std::uint8_t LSTRIP; // characters, 0 to 30
    std::uint8_t TSTRIP; // characters, 0 to 30
    std::uint8_t SPCSTRP;
    std::uint8_t EDITTYPE;     // index: code
    std::uint8_t BEEPTN;       // index: tone
    std::uint8_t BEEPTM;       // index: length
    std::uint8_t LSRTIME;      // seconds, 0 is off
    std::uint8_t TRIGGER_MODE; // index
    std::uint8_t READDLY;      // tenths
    std::uint8_t CODEID;
    std::uint8_t LIDENT;
    std::uint8_t FKEYS;
    std::uint8_t SPCLKEY;
    std::uint8_t OFFTIME; // minutes, 0 is off
    std::uint8_t PASSWD;
    std::uint8_t AUTOI;
    std::uint8_t AUTOF;
    std::uint8_t DSPDLY; // tenths
    std::uint8_t OVERW;
    std::uint8_t USRHALT;
    std::uint8_t WEJKBD;
    std::uint8_t DEFMODE;  // index: keyboard wedge, RS232 serial
    std::uint8_t PCTYPEID; // index: type of the wedged computer
    std::uint8_t KBDTYPE;  // index: keyboard
    std::uint8_t KBDSPD;   // index: speed
    std::uint8_t AUTOD;
    std::uint8_t CAPLCK;
    std::uint8_t NUMLCK;
    std::uint8_t SCAN3;
    std::uint8_t XMITDMODE;    // index: data
    std::uint8_t XMITMODE;     // index: mode
    std::uint8_t DIALMOD;      // index: tone, pulse
    std::uint8_t PROTOCOLX;    // index: none, XMODEM
    std::uint8_t FLOW_CONTROL; // index: none, XON/XOFF, RTS/CTS; stands behind lcd_contrast in the file
    std::uint8_t SERFMTX;      // index: ASCII, PCSCAN
    std::uint8_t BAUDRATEX;    // index: 300 to 57600
    std::uint8_t DATABX;       // index: 8, 7
    std::uint8_t PARITYX;      // index: none, odd, even
    std::uint8_t STPBITSX;     // index: 1, 2
    std::uint8_t SERTIMEX;     // milliseconds
    std::uint8_t SERDUPX;      // index: half, full
    std::uint8_t MDMTIMOUT;
    std::uint8_t SOT_DELAY; // tenths
    std::uint8_t EOT_DELAY; // tenths
    std::uint8_t key_click_flag;
    std::uint8_t lcd_contrast; // 0 to 99
    std::uint8_t LTRIGGER;     // index: none, alpha, laser
    std::uint8_t RTRIGGER;     // index: none, alpha, laser
    std::uint8_t REREAD;       // 0 to 9

    std::string PREAMBLEB;  // as typed, in escaped notation
    std::string POSTAMBLEB; // as typed, in escaped notation
    std::string PHONENUM;
    std::string MODEMINIT;
    std::string SOT_TEXT; // stored bytes
    std::string EOT_TEXT; // stored bytes
};

// Longest texts in bytes, without the terminating NUL.
inline constexpr std::size_t AMBLE_LIMIT = 32;
inline constexpr std::size_t PHONENUM_LIMIT = 29;
inline constexpr std::size_t MODEMINIT_LIMIT = 99;
inline constexpr std::size_t TRANSMIT_TEXT_LIMIT = 250;

inline constexpr char SETUP_FILE_TYPE = 'S';

// The one setup record.
extern SETUP_RECORD setup_record;

// Sets every item and text to its factory default.
void reset_setups();

// Writes the record to the named file; an old file is replaced only by a complete new one. Failure is
// reported.
void save_setup_file(const std::string& filename);

inline constexpr unsigned char SETUP_BAD_CHECKSUM = 0xFF;

// Reads a setup file into the record. Returns 1; SETUP_BAD_CHECKSUM when the record was loaded but its
// checksum is wrong; 0 when nothing was loaded (all reported); or what the library or earlier-model reader
// returned.
unsigned char open_setup_file(const std::string& filename);
