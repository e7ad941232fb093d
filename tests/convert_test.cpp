#include "convert/CONVERT_text.h"

#include "tests/test_files.h"

namespace {

using namespace std::string_literals;

class ConvertTest : public FILE_TEST {};

} // namespace

TEST_F(ConvertTest, ReadsFieldAfterFieldInEveryCoding) {
    const std::pair<std::string, std::string> families[] = {
        {"\xE0\xFD\xFF\x80", "||||"}, // empty ones; status bytes are no characters of their own
        {"\x65\x6A\x7F\xA1\xA5\xBE\xBF", "5|A|V|W|a|z| |"},
        {"\203abc\xA0\x04WXYZ\x81\xFF\x82\xFDx\x81\xFE", "abc|WXYZ|\xFF|||"},
        {"\x01\x12\x11\x01\x12\x41\0\x21\0\x42\xE0\x3F"s, "12|12|a|A|A|"},
        {"\x41\xF0\x01\xE0\x42\xF0\x80", "||#a|"},        // escapes without and with their code
        {"\xC1\xFF\xC2\x83\xFF\x02\xFF\xFF", "|A|\x7F|"}, // filler, and no filler when escaped
        {"\x9Fzz", "zz|"},                                // these end before their length
        {"\xA0\xFFWX", "WX|"},
        {"\x11", "|"},
    };
    for (const auto& [fields, expected] : families) {
        write_bytes(path("TEXTS"), fields);
        const FILE_HANDLE file = open_file(path("TEXTS"), "rb");
        std::string texts;
        for (std::string text; read_string_data(file.get(), text);)
            texts += text + '|';
        EXPECT_EQ(texts, expected) << testing::PrintToString(fields);
        EXPECT_EQ(read_compressed_field(file.get(), texts), -1);
    }
}

TEST(DecompressString, FollowsEverySwitchAndEscapeAndExpandsACutFieldInPart) {
    const std::string field =
        "\x10\x37\x01\x23\x45\x67\x89\xAB\xE0\x7F\xBC\x00\x44\x32\x14\xC7\x42\x54\xB6\x35"
        "\xCF\x84\x65\x3A\x56\xD7\xC6\x75\xBF\x7F\xFF\x78\x00\x88\x64\x29\x8E\x84\xA9\x6C"
        "\x6B\x9F\x08\xCA\x74\xAD\xAF\x8C\xEB\x7E\x57\xFF\x74\x3D\x1D\x0F\x0B"s;
    const std::string text = "0123456789 .!{abcdefghijklmnopqrstuvwxyz .@}ABCDEFGHIJKLMNOPQRSTUVWXYZ .+~b1B2";
    std::string expanded;
    for (std::size_t size = 0; size <= field.size(); ++size) {
        const int length = decompress_string(&expanded, field.substr(0, size)) - 1;
        EXPECT_EQ(expanded, text.substr(0, static_cast<std::size_t>(length))) << size;
    }
    EXPECT_EQ(decompress_string(nullptr, field), static_cast<int>(text.size()) + 1);
    EXPECT_EQ(expanded, text);
}

TEST(CopyBits, CopiesAcrossBytesAndLeavesTheOthers) {
    const std::uint8_t source[] = {0xA5, 0x3C};
    std::uint8_t dest[] = {0xFF, 0x00, 0xFF};
    copy_bits(dest, 5, source, 3, 11);
    EXPECT_EQ(dest[0] << 16 | dest[1] << 8 | dest[2], 0xF94F << 8 | 0xFF);
}
