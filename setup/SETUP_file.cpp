// The setup file:
//
//   offset  size  content
//        0     4  length word: bytes before the checksum, big-endian
//        4     1  type byte 'S'
//        5    68  the one-byte items, in the order of ITEMS
//       73     -  the texts, in the order of TEXTS, each with its NUL
//   length     2  checksum, big-endian
#include "setup/SETUP.h"

#include "app/TolvanP.h"
#include "app/checksum.h"
#include "app/desktop.h"
#include "app/files.h"
#include "convert/CONVERT.h"
#include "library/LIB.h"

#include <array>
#include <new>

SETUP_RECORD setup_record;

namespace {

constexpr char OPEN_CAPTION[] = "Open File";
constexpr char CANNOT_OPEN[] = "Cannot Open Setup File!";
constexpr char SAVE_CAPTION[] = "Save File";
constexpr std::size_t FILE_TYPE_OFFSET = 4;
constexpr std::uint32_t QUENDAL_MARK = 0x7C; // third byte of an earlier-model setup file

struct SETUP_ITEM {
    std::uint8_t SETUP_RECORD::*item;
    std::uint8_t factory;
};

// In the order of the file, which is not quite the order of the record: FLOW_CONTROL stands behind
// lcd_contrast.
constexpr std::array<SETUP_ITEM, 68> ITEMS = {{
    {&SETUP_RECORD::C39FLAGS, 0x01},   {&SETUP_RECORD::UPCFLAGS, 0x1F},  {&SETUP_RECORD::EANFLAGS, 0x1F},
    {&SETUP_RECORD::SUPFLAGS, 0x06},   {&SETUP_RECORD::I25FLAGS, 0x01},  {&SETUP_RECORD::I25_FL_1, 6},
    {&SETUP_RECORD::I25_FL_2, 0},      {&SETUP_RECORD::I25_FL_3, 0},     {&SETUP_RECORD::CDBRFLAGS, 0x01},
    {&SETUP_RECORD::C128FLAGS, 0x05},  {&SETUP_RECORD::C93FLAGS, 0x01},  {&SETUP_RECORD::MSIFLAGS, 0x00},
    {&SETUP_RECORD::C11FLAGS, 0x00},   {&SETUP_RECORD::BTERM, 2},        {&SETUP_RECORD::USRTERM, 0x00},
    {&SETUP_RECORD::BARONLY, 0},       {&SETUP_RECORD::PREAMBLEBD, 0},   {&SETUP_RECORD::POSTAMBLEBD, 0},
    {&SETUP_RECORD::BEDIT, 0},         {&SETUP_RECORD::LSTRIP, 0},       {&SETUP_RECORD::TSTRIP, 0},
    {&SETUP_RECORD::SPCSTRP, 0},       {&SETUP_RECORD::EDITTYPE, 11},    {&SETUP_RECORD::BEEPTN, 2},
    {&SETUP_RECORD::BEEPTM, 1},        {&SETUP_RECORD::LSRTIME, 3},      {&SETUP_RECORD::TRIGGER_MODE, 0},
    {&SETUP_RECORD::READDLY, 10},      {&SETUP_RECORD::CODEID, 0},       {&SETUP_RECORD::LIDENT, 1},
    {&SETUP_RECORD::FKEYS, 1},         {&SETUP_RECORD::SPCLKEY, 1},      {&SETUP_RECORD::OFFTIME, 5},
    {&SETUP_RECORD::PASSWD, 0},        {&SETUP_RECORD::AUTOI, 0},        {&SETUP_RECORD::AUTOF, 0},
    {&SETUP_RECORD::DSPDLY, 5},        {&SETUP_RECORD::OVERW, 1},        {&SETUP_RECORD::USRHALT, 0},
    {&SETUP_RECORD::WEJKBD, 0},        {&SETUP_RECORD::DEFMODE, 0},      {&SETUP_RECORD::PCTYPEID, 1},
    {&SETUP_RECORD::KBDTYPE, 0},       {&SETUP_RECORD::KBDSPD, 0},       {&SETUP_RECORD::AUTOD, 1},
    {&SETUP_RECORD::CAPLCK, 1},        {&SETUP_RECORD::NUMLCK, 0},       {&SETUP_RECORD::SCAN3, 0},
    {&SETUP_RECORD::XMITDMODE, 0},     {&SETUP_RECORD::XMITMODE, 0},     {&SETUP_RECORD::DIALMOD, 0},
    {&SETUP_RECORD::PROTOCOLX, 1},     {&SETUP_RECORD::SERFMTX, 0},      {&SETUP_RECORD::BAUDRATEX, 5},
    {&SETUP_RECORD::DATABX, 0},        {&SETUP_RECORD::PARITYX, 0},      {&SETUP_RECORD::STPBITSX, 0},
    {&SETUP_RECORD::SERTIMEX, 0},      {&SETUP_RECORD::SERDUPX, 1},      {&SETUP_RECORD::MDMTIMOUT, 0},
    {&SETUP_RECORD::SOT_DELAY, 0},     {&SETUP_RECORD::EOT_DELAY, 0},    {&SETUP_RECORD::key_click_flag, 1},
    {&SETUP_RECORD::lcd_contrast, 50}, {&SETUP_RECORD::FLOW_CONTROL, 2}, {&SETUP_RECORD::LTRIGGER, 2},
    {&SETUP_RECORD::RTRIGGER, 2},      {&SETUP_RECORD::REREAD, 0},
}};

struct SETUP_TEXT {
    std::string SETUP_RECORD::*text;
    std::size_t limit; // bytes without the NUL
    const char* factory;
};
constexpr std::array<SETUP_TEXT, 6> TEXTS = {{
    {&SETUP_RECORD::PREAMBLEB, AMBLE_LIMIT, ""},
    {&SETUP_RECORD::POSTAMBLEB, AMBLE_LIMIT, ""},
    {&SETUP_RECORD::PHONENUM, PHONENUM_LIMIT, ""},
    {&SETUP_RECORD::MODEMINIT, MODEMINIT_LIMIT, "AT&F&C1"},
    {&SETUP_RECORD::SOT_TEXT, TRANSMIT_TEXT_LIMIT, ""},
    {&SETUP_RECORD::EOT_TEXT, TRANSMIT_TEXT_LIMIT, ""},
}};

void show_warning(const char* text, const char* caption) {
    show_message(nullptr, text, caption, MESSAGE_ICON::WARNING);
}

std::string setup_image() {
    std::string image;
    append_long(image, 0);
    append_byte(image, SETUP_FILE_TYPE);
    for (const auto& [item, factory] : ITEMS)
        append_byte(image, setup_record.*item);
    for (const auto& [text, limit, factory] : TEXTS)
        append_text(image, std::string_view(setup_record.*text).substr(0, limit));
    put_long(image, 0, static_cast<std::uint32_t>(image.size()));
    return image;
}

// Fills the record from the bytes before the checksum. False when they end too early; what they did not hold
// is then 0 or empty.
bool read_setup(std::string_view data) {
    BYTE_READER reader{data, FILE_TYPE_OFFSET + 1};
    for (const auto& [item, factory] : ITEMS)
        setup_record.*item = read_byte(reader);
    for (const auto& [text, limit, factory] : TEXTS)
        setup_record.*text = read_string(reader).substr(0, limit);
    return !reader.past_end;
}

// Reads a file that is one setup. Result as of open_setup_file.
unsigned char load_setup(std::FILE* file, const FILE_START& start) {
    if (fold_type(start.type) != SETUP_FILE_TYPE) {
        show_warning("Not a Valid Setup File!", OPEN_CAPTION);
        return 0;
    }
    const auto image = read_whole_file(file);
    if (!image) {
        show_warning(CANNOT_OPEN, OPEN_CAPTION);
        return 0;
    }
    const bool complete = read_setup(std::string_view(*image).substr(0, start.length));
    if (!isvalid_checksum(file, SETUP_CHECKSUM) || !complete) {
        show_warning("Invalid Checksum in Setup File!", "Invalid Checksum");
        return SETUP_BAD_CHECKSUM;
    }
    return 1;
}

unsigned char load_setup_within_memory(std::FILE* file, const FILE_START& start) {
    try {
        return load_setup(file, start);
    } catch (const std::bad_alloc&) {
        report_out_of_memory(nullptr);
        return 0;
    }
}

unsigned char load_from_library(const std::string& filename) {
    bool is_member_read = false;
    const auto result = read_library_member(nullptr, filename, [&](std::FILE* member) {
        is_member_read = true;
        return load_setup_within_memory(member, read_file_start(member));
    });
    if (result == 0 && !is_member_read)
        show_warning("Invalid/Corrupt Library File!", "Invalid/Corrupt");
    return static_cast<unsigned char>(result);
}

} // namespace

void reset_setups() {
    for (const auto& [item, factory] : ITEMS)
        setup_record.*item = factory;
    for (const auto& [text, limit, factory] : TEXTS)
        setup_record.*text = factory;
}

void save_setup_file(const std::string& filename) {
    try {
        if (!save_with_checksum(filename, setup_image(), SETUP_CHECKSUM))
            show_warning("Cannot Save Setup File.\nFile Creation Error!", SAVE_CAPTION);
    } catch (const std::bad_alloc&) {
        report_out_of_memory(nullptr);
    }
}

unsigned char open_setup_file(const std::string& filename) {
    FILE_HANDLE file = open_file(filename, "rb");
    if (!file) {
        show_warning(CANNOT_OPEN, OPEN_CAPTION);
        return 0;
    }
    const FILE_START start = read_file_start(file.get());
    if (fills_file(file.get(), start.length))
        return load_setup_within_memory(file.get(), start);
    file.reset();
    // The mark counts before the type: an earlier-model file may well hold an 'S' there.
    const std::uint32_t third_byte = (start.length >> 8) & 0xFF;
    if (third_byte == QUENDAL_MARK || !is_library_member_type(fold_type(start.type)))
        return static_cast<unsigned char>(open_quendal_setup_file(filename));
    return load_from_library(filename);
}
