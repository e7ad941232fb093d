#include "setup/SETUP.h"
#include "tests/test_files.h"

namespace {

using namespace std::string_literals;

const std::string FACTORY_FILE =
    "\0\0\0\x56S"
    "\x01\x1F\x1F\x06\x01\x06\0\0\x01\x05\x01\0\0" // symbologies, I 2 of 5 sizes behind the fifth
    "\x02\0\0\0\0\0\0\0\0\x0B"                     // terminations, ambles, bar code edit
    "\x02\x01\x03\0\x0A\0\x01"                     // beeper, laser, reading
    "\x01\x01\x05\0\0\0\x05\x01\0"                 // keys, time-out, password, display, errors
    "\0\0\x01\0\0\x01\x01\0\0"                     // keyboard wedge
    "\0\0\0\x01\0\x05\0\0\0\0\x01\0\0\0"           // communications
    "\x01\x32\x02\x02\x02\0"                       // beep, contrast, flow control, triggers
    "\0\0\0AT&F&C1\0\0\0"                          // the six texts
    "\xC6\x44"s;
constexpr std::size_t ITEMS = 68;
constexpr std::size_t FLOW_CONTROL_IN_RECORD = 52; // items before it
constexpr std::size_t FLOW_CONTROL_IN_FILE = 64;

const FILE_KIND SETUP_KIND = {[](const std::string& name) {
                                  setup_record.DSPDLY = 77;
                                  const int result = open_setup_file(name);
                                  EXPECT_TRUE(result != 0 || setup_record.DSPDLY == 77)
                                      << "a refused file has changed the record";
                                  return result;
                              },
                              [](const std::string& name) {
                                  save_setup_file(name);
                                  return 1;
                              },
                              FACTORY_FILE,
                              read_bytes(TOLVAN_SAMPLES "/STOCK.CFT"),
                              SETUP_CHECKSUM,
                              {0, "Not a Valid Setup File!"},
                              {SETUP_BAD_CHECKSUM, "Invalid Checksum in Setup File!", "Invalid Checksum"},
                              "Cannot Open Setup File!",
                              "Cannot Save Setup File.\nFile Creation Error!",
                              "Invalid/Corrupt Library File!",
                              0xFF};

class SetupFileTest : public FILE_TEST {};

} // namespace

TEST_F(SetupFileTest, EveryItemAndTextHasItsPlaceAndEveryTextItsLimit) {
    const std::pair<std::string SETUP_RECORD::*, std::size_t> texts[] = {
        {&SETUP_RECORD::PREAMBLEB, 32}, {&SETUP_RECORD::POSTAMBLEB, 32}, {&SETUP_RECORD::PHONENUM, 29},
        {&SETUP_RECORD::MODEMINIT, 99}, {&SETUP_RECORD::SOT_TEXT, 250},  {&SETUP_RECORD::EOT_TEXT, 250}};
    std::string items;
    for (std::size_t item = 0; item < ITEMS; ++item)
        items += static_cast<char>(100 + item);
    std::string too_long = FACTORY_FILE.substr(0, 5) + items;
    std::string cut = too_long;
    char fill = '0';
    for (const auto& [text, limit] : texts) {
        append_text(too_long, std::string(limit + 1000, ++fill));
        append_text(cut, std::string(limit, fill));
    }
    expect_outcome(SETUP_KIND, stamped(too_long, SETUP_CHECKSUM), OPENED);
    EXPECT_EQ(saved_bytes(SETUP_KIND), stamped(cut, SETUP_CHECKSUM));
    fill = '0';
    for (const auto& [text, limit] : texts)
        EXPECT_EQ(setup_record.*text, std::string(limit, ++fill));

    // The record starts with the items, one byte each, in the file's order but for one.
    std::string in_record(reinterpret_cast<const char*>(&setup_record), ITEMS);
    const char flow_control = in_record[FLOW_CONTROL_IN_RECORD];
    in_record.erase(FLOW_CONTROL_IN_RECORD, 1).insert(FLOW_CONTROL_IN_FILE, 1, flow_control);
    EXPECT_EQ(in_record, items);
    EXPECT_EQ(setup_record.FLOW_CONTROL, 100 + FLOW_CONTROL_IN_FILE);
    EXPECT_EQ(setup_record.REREAD, 100 + ITEMS - 1);
    reset_setups();
    EXPECT_EQ(saved_bytes(SETUP_KIND), FACTORY_FILE);
    EXPECT_EQ(FACTORY_FILE.size(), 88U);
}

TEST_F(SetupFileTest, OpensWhatIsWholeAndReportsEveryDamage) {
    expect_damage_reported(SETUP_KIND);
    expect_outcomes(SETUP_KIND);
    expect_outcome(SETUP_KIND, std::string(FACTORY_FILE).replace(5, 1, "B"), SETUP_KIND.bad_checksum);
    EXPECT_EQ(setup_record.C39FLAGS, 'B') << "what was read stays";
    std::string data = FACTORY_FILE.substr(0, 86);
    data[4] = 's'; // the type byte counts in either case
    expect_outcome(SETUP_KIND, stamped(data, SETUP_CHECKSUM), OPENED);
    expect_outcome(SETUP_KIND, data, LIBRARY);
    data[2] = 0x7C; // the earlier model's mark comes before the type
    expect_outcome(SETUP_KIND, data, QUENDAL);
}
