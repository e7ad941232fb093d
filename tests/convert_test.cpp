#include "convert/CONVERT_text.h"

#include "tests/test_files.h"

namespace {

using namespace std::string_literals;

class ConvertTest : public FILE_TEST {};

std::string texts_of(const std::string& name, const std::string& fields) {
    write_bytes(name, fields);
    const FILE_HANDLE file = open_file(name, "rb");
    std::string texts;
    for (std::string text; read_string_data(file.get(), text);)
        texts += text + '|';
    return texts;
}

} // namespace

TEST_F(ConvertTest, ReadsFieldAfterFieldInEveryCodingAndACutOneInPart) {
    const std::string packed =
        "\x10\x37\x01\x23\x45\x67\x89\xAB\xE0\x7F\xBC\x00\x44\x32\x14\xC7\x42\x54\xB6"
        "\x35\xCF\x84\x65\x3A\x56\xD7\xC6\x75\xBF\x7F\xFF\x78\x00\x88\x64\x29\x8E\x84"
        "\xA9\x6C\x6B\x9F\x08\xCA\x74\xAD\xAF\x8C\xEB\x7E\x57\xFF\x74\x3D\x1D\x0F\x0B"s;
    const std::pair<std::string, std::string> families[] = {
        {"\xE0\xFD\xFF\x80", "||||"}, // empty ones; status bytes are no characters of their own
        {"\x65\x6A\x7F\xA1\xA5\xBE\xBF", "5|A|V|W|a|z| |"},
        {"\203abc\xA0\x04WXYZ\x81\xFF\x82\xFDx\x81\xFE", "abc|WXYZ|\xFF|||"},
        {"\x01\x12\x11\x01\x12\x41\0\x21\0\x42\xE0\x3F"s, "12|12|a|A|A|"},
        {"\x41\xF0\x01\xE0\x42\xF0\x80", "||#a|"},        // escapes without and with their code
        {"\xC1\xFF\xC2\x83\xFF\x02\xFF\xFF", "|A|\x7F|"}, // filler, and no filler when escaped
        {"\x9Fzz", "zz|"},                                // these end before their length
        {"\xA0\xFFWX", "WX|"},
        {"\x04\x12", "12|"},
        {packed, "0123456789 .!{abcdefghijklmnopqrstuvwxyz .@}ABCDEFGHIJKLMNOPQRSTUVWXYZ .+~b1B2|"}};
    for (const auto& [fields, texts] : families) {
        EXPECT_EQ(texts_of(path("TEXTS"), fields), texts) << testing::PrintToString(fields);
        for (std::size_t size = 1; size < fields.size(); ++size) {
            std::string part = texts_of(path("TEXTS"), fields.substr(0, size));
            ASSERT_TRUE(part.ends_with('|') && texts.starts_with(part.substr(0, part.size() - 1))) << size;
        }
    }
}
