#include "app/checksum.h"
#include "app/files.h"
#include "setup/SETUP.h"
#include "tests/test_files.h"

#include <csignal>
#include <sys/resource.h>

namespace {

// The file of a reset setup, item by item from offset 5.
const std::string FACTORY_FILE =
    std::string("\0\0\0\x56S"
                "\x01\x1F\x1F\x06\x01\x06\0\0\x01\x05\x01\0\0" // symbologies, I 2 of 5 sizes behind the fifth
                "\x02\0\0\0\0\0\0\0\0\x0B"                     // terminations, ambles, bar code edit
                "\x02\x01\x03\0\x0A\0\x01"                     // beeper, laser, reading
                "\x01\x01\x05\0\0\0\x05\x01\0"                 // keys, time-out, password, display, errors
                "\0\0\x01\0\0\x01\x01\0\0"                     // keyboard wedge
                "\0\0\0\x01\0\x05\0\0\0\0\x01\0\0\0"           // communications
                "\x01\x32\x02\x02\x02\0"                       // beep, contrast, flow control, triggers
                "\0\0\0AT&F&C1\0\0\0",                         // the six texts
                86) +
    "\xC6\x44";

const char* const BAD_CHECKSUM_TEXT = "Invalid Checksum in Setup File!";

class SetupFileTest : public FILE_TEST {
protected:
    SetupFileTest() {
        reset_setups();
    }
    unsigned char open_bytes(const std::string& bytes) {
        write_bytes(path("SETUP.CFT"), bytes);
        return open_setup_file(path("SETUP.CFT"));
    }
    std::string saved_bytes() {
        save_setup_file(path("SAVED.CFT"));
        return read_bytes(path("SAVED.CFT"));
    }
    // The same bytes with the right checksum behind them.
    std::string stamped(const std::string& data) {
        write_bytes(path("STAMPED"), data);
        write_checksum(path("STAMPED"), SETUP_CHECKSUM);
        return read_bytes(path("STAMPED"));
    }
};

// Items along the file, by their offset in it. FLOW_CONTROL stands apart from its place in the record.
struct ITEM_PLACE {
    std::size_t offset;
    std::uint8_t SETUP_RECORD::*item;
};
constexpr ITEM_PLACE PLACES[] = {
    {5, &SETUP_RECORD::C39FLAGS},        {9, &SETUP_RECORD::I25FLAGS},      {12, &SETUP_RECORD::I25_FL_3},
    {13, &SETUP_RECORD::CDBRFLAGS},      {17, &SETUP_RECORD::C11FLAGS},     {18, &SETUP_RECORD::BTERM},
    {22, &SETUP_RECORD::POSTAMBLEBD},    {27, &SETUP_RECORD::EDITTYPE},     {31, &SETUP_RECORD::TRIGGER_MODE},
    {37, &SETUP_RECORD::OFFTIME},        {42, &SETUP_RECORD::OVERW},        {46, &SETUP_RECORD::PCTYPEID},
    {51, &SETUP_RECORD::NUMLCK},         {55, &SETUP_RECORD::DIALMOD},      {56, &SETUP_RECORD::PROTOCOLX},
    {57, &SETUP_RECORD::SERFMTX},        {58, &SETUP_RECORD::BAUDRATEX},    {63, &SETUP_RECORD::SERDUPX},
    {67, &SETUP_RECORD::key_click_flag}, {68, &SETUP_RECORD::lcd_contrast}, {69, &SETUP_RECORD::FLOW_CONTROL},
    {70, &SETUP_RECORD::LTRIGGER},       {71, &SETUP_RECORD::RTRIGGER},     {72, &SETUP_RECORD::REREAD},
};

} // namespace

TEST_F(SetupFileTest, AResetSetupSavesAsTheFactoryFile) {
    setup_record.SPCLKEY = 0;
    setup_record.EOT_TEXT = "x";
    reset_setups();
    EXPECT_EQ(saved_bytes(), FACTORY_FILE);
    EXPECT_EQ(FACTORY_FILE.size(), 88U);
    EXPECT_EQ(files_in_folder(), 1U);
}

TEST_F(SetupFileTest, EveryItemAndTextHasItsPlace) {
    std::string data = FACTORY_FILE.substr(0, 5);
    for (int item = 0; item < 68; ++item)
        append_byte(data, static_cast<std::uint8_t>(100 + item));
    const std::string texts[] = {std::string(32, '/'),     "/0D",
                                 std::string(29, '5'),     std::string(99, 'M'),
                                 std::string(250, '\xFF'), std::string(250, '\r')};
    for (const auto& text : texts)
        append_text(data, text);
    put_long(data, 0, static_cast<std::uint32_t>(data.size()));
    const std::string bytes = stamped(data);
    ASSERT_EQ(open_bytes(bytes), 1);
    for (const auto& place : PLACES)
        EXPECT_EQ(setup_record.*place.item, 95 + place.offset) << place.offset;
    EXPECT_EQ(setup_record.PREAMBLEB, texts[0]);
    EXPECT_EQ(setup_record.POSTAMBLEB, texts[1]);
    EXPECT_EQ(setup_record.PHONENUM, texts[2]);
    EXPECT_EQ(setup_record.MODEMINIT, texts[3]);
    EXPECT_EQ(setup_record.SOT_TEXT, texts[4]);
    EXPECT_EQ(setup_record.EOT_TEXT, texts[5]);
    EXPECT_EQ(saved_bytes(), bytes);
}

TEST_F(SetupFileTest, TakesPaddingAndALowerCaseType) {
    setup_record.DSPDLY = 77;
    EXPECT_EQ(open_bytes(FACTORY_FILE + std::string(40, '\0')), 1);
    EXPECT_EQ(setup_record.DSPDLY, 5);
    std::string lower_case = FACTORY_FILE.substr(0, 86);
    lower_case[4] = 's';
    EXPECT_EQ(open_bytes(stamped(lower_case)), 1);
}

TEST_F(SetupFileTest, CutsATextThatIsLongerThanItsBuffer) {
    std::string data = FACTORY_FILE.substr(0, 73) + std::string(1000, 'P') + FACTORY_FILE.substr(73, 13);
    put_long(data, 0, static_cast<std::uint32_t>(data.size()));
    EXPECT_EQ(open_bytes(stamped(data)), 1);
    EXPECT_EQ(setup_record.PREAMBLEB, std::string(32, 'P'));
    EXPECT_EQ(setup_record.MODEMINIT, "AT&F&C1");
    EXPECT_EQ(setup_record.EOT_TEXT, "");
}

TEST_F(SetupFileTest, ATextWithoutItsEndIsADamagedFile) {
    std::string data = FACTORY_FILE.substr(0, 85); // the end of the last text is missing
    put_long(data, 0, 85);
    expect_warning(BAD_CHECKSUM_TEXT, "Invalid Checksum");
    EXPECT_EQ(open_bytes(stamped(data)), 0xFF);
}

TEST_F(SetupFileTest, RefusesWhatIsNoSetup) {
    setup_record.DSPDLY = 77;
    expect_warning("Cannot Open Setup File!", "Open File");
    EXPECT_EQ(open_setup_file(path("NONE.CFT")), 0);
    for (const bool padded : {false, true}) {
        std::string program = FACTORY_FILE;
        program[4] = 'I';
        expect_warning("Not a Valid Setup File!", "Open File");
        EXPECT_EQ(open_bytes(program + std::string(padded ? 3 : 0, '\0')), 0);
    }
    EXPECT_EQ(setup_record.DSPDLY, 77);
}

TEST_F(SetupFileTest, ReportsEveryTruncation) {
    for (std::size_t size = 0; size < FACTORY_FILE.size(); ++size) {
        SCOPED_TRACE(size);
        setup_record.DSPDLY = 77;
        if (size == 2 || size == 3) // all zeros: an empty file with its padding, if it had a type
            expect_warning("Not a Valid Setup File!", "Open File");
        else if (size <= 4)
            expect_quendal_refusal();
        else
            expect_library_refusal();
        EXPECT_EQ(open_bytes(FACTORY_FILE.substr(0, size)), 0);
        EXPECT_EQ(setup_record.DSPDLY, 77);
    }
}

TEST_F(SetupFileTest, ReportsEveryChangedByte) {
    for (std::size_t offset = 0; offset < FACTORY_FILE.size(); ++offset)
        for (const int change : {0x01, 0x20, 0x7C, 0xFF}) {
            SCOPED_TRACE(testing::Message() << "offset " << offset << ", change " << change);
            std::string changed = FACTORY_FILE;
            changed[offset] = static_cast<char>(changed[offset] ^ change);
            const bool no_setup = offset == 4 && change != 0x20;
            if (no_setup)
                expect_warning("Not a Valid Setup File!", "Open File");
            else if (offset == 2 && change == 0x7C)
                expect_quendal_refusal();
            else if (offset < 4)
                expect_library_refusal();
            else
                expect_warning(BAD_CHECKSUM_TEXT, "Invalid Checksum");
            EXPECT_EQ(open_bytes(changed), offset < 4 || no_setup ? 0 : 0xFF);
        }
}

TEST_F(SetupFileTest, LengthWordsAreClaims) {
    for (const std::uint32_t length :
         {0U, 73U, 85U, 87U, 0x7FFFFFFFU, 0xFFFFFFFDU, 0xFFFFFFFEU, 0xFFFFFFFFU}) {
        std::string bytes = FACTORY_FILE;
        put_long(bytes, 0, length);
        expect_library_refusal();
        EXPECT_EQ(open_bytes(bytes), 0) << length;
    }
}

TEST_F(SetupFileTest, AWrongChecksumLeavesWhatWasRead) {
    std::string bytes = FACTORY_FILE;
    bytes[41] = 66;
    expect_warning(BAD_CHECKSUM_TEXT, "Invalid Checksum");
    EXPECT_EQ(open_bytes(bytes), SETUP_BAD_CHECKSUM);
    EXPECT_EQ(setup_record.DSPDLY, 66);
}

TEST_F(SetupFileTest, AFailedSaveIsReportedAndLeavesTheOldFile) {
    const char* const failed = "Cannot Save Setup File.\nFile Creation Error!";
    expect_warning(failed, "Save File");
    save_setup_file(path("NO FOLDER/SETUP.CFT"));

    std::filesystem::create_directories(path("FOLDER.CFT/KEEP"));
    expect_warning(failed, "Save File");
    save_setup_file(path("FOLDER.CFT"));
    EXPECT_EQ(files_in_folder(), 1U);

    // A disk that is full after 40 bytes.
    write_bytes(path("SETUP.CFT"), "old");
    const auto old_action = std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit full = {40, limit.rlim_max};
    setrlimit(RLIMIT_FSIZE, &full);
    expect_warning(failed, "Save File");
    save_setup_file(path("SETUP.CFT"));
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, old_action);
    EXPECT_EQ(read_bytes(path("SETUP.CFT")), "old");
    EXPECT_EQ(files_in_folder(), 2U);
}

TEST_F(SetupFileTest, TheSampleSavesBackToTheSameBytes) {
    const std::string sample = TOLVAN_SAMPLES "/STOCK.CFT";
    ASSERT_EQ(open_setup_file(sample), 1);
    EXPECT_EQ(saved_bytes(), read_bytes(sample));
    EXPECT_NE(saved_bytes(), FACTORY_FILE);
}
