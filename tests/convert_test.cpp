#include "convert/CONVERT_text.h"

#include "tests/test_files.h"

#include <random>

namespace {

using namespace std::string_literals;

std::string expanded(const std::string& field) {
    std::string text = "before";
    const int size = decompress_string(&text, field);
    EXPECT_EQ(size, static_cast<int>(text.size()) + 1);
    EXPECT_EQ(size, decompress_string(nullptr, field));
    return text;
}

// A text and the field that it is packed in, with codes as they come: characters, switches and escapes.
std::pair<std::string, std::string> pack_random_text(unsigned status, unsigned table,
                                                     std::minstd_rand& random) {
    constexpr unsigned WIDTHS[] = {0, 4, 5, 5, 5, 7};
    constexpr unsigned SWITCHED[][2] = {{}, {2, 3}, {3, 1}, {1, 2}};
    const std::string characters[] = {"", "0123456789 .", "abcdefghijklmnopqrstuvwxyz .",
                                      "ABCDEFGHIJKLMNOPQRSTUVWXYZ ."};
    std::string text, bits;
    const auto random_code = [&](unsigned codes, unsigned width) {
        const auto code = static_cast<unsigned>(random() % codes);
        while (width-- > 0)
            bits += (code >> width & 1) != 0 ? '1' : '0';
        return code;
    };
    for (auto left = random() % 100; left > 0; --left) {
        unsigned escaped = 5;
        if (table != 5) {
            // Behind the characters stand two switches and the escapes to tables 4 and 5.
            const auto plain = static_cast<unsigned>(characters[table].size());
            const unsigned code = random_code(plain + 4, WIDTHS[table]);
            if (code < plain)
                text += characters[table][code];
            else if (code < plain + 2)
                table = SWITCHED[table][code - plain];
            if (code < plain + 2)
                continue;
            escaped = code - plain + 2;
        }
        const unsigned code = random_code(1U << WIDTHS[escaped], WIDTHS[escaped]);
        if (table != 5 || code != 127)
            text += static_cast<char>(escaped == 4 ? '!' + code : code);
    }
    // Ones end a text in every table: an escape without its code, or the filler.
    bits.resize((bits.size() + 7) / 8 * 8, '1');
    std::string field = {static_cast<char>(status | 0x10), static_cast<char>(bits.size() / 8)};
    for (std::size_t at = 0; at < bits.size(); at += 8)
        field += static_cast<char>(std::stoi(bits.substr(at, 8), nullptr, 2));
    return {text, field};
}

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
        {"\xA0", "|"},
        {"\xA0\xFFWX", "WX|"},
        {"\x11", "|"},
        {"\x0F\x12", "12|"},
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

TEST(DecompressString, TextsPackedAtRandomComeBackAndCutOnesInPart) {
    const std::pair<unsigned, unsigned> starts[] = {{0x00, 1}, {0x40, 2}, {0x20, 3}, {0xC0, 5}};
    std::minstd_rand random(8);
    for (std::size_t round = 0; round < 800; ++round) {
        const auto& [text, field] =
            pack_random_text(starts[round % 4].first, starts[round % 4].second, random);
        ASSERT_EQ(expanded(field), text);
        for (std::size_t size = 0; size < field.size(); ++size)
            ASSERT_TRUE(text.starts_with(expanded(field.substr(0, size))));
    }
}

TEST(DecompressString, BearsAnyBytesAndAnyCode) {
    std::minstd_rand random(9);
    std::string field, text;
    for (int round = 0; round < 1000000; ++round) {
        field.resize(random() % 12);
        for (char& byte : field)
            byte = static_cast<char>(random() >> 8);
        ASSERT_LE(decompress_string(&text, field), 24) << testing::PrintToString(field);
    }
    for (int table = -2; table < 9; ++table)
        for (const unsigned code : {0U, 31U, 32U, 128U, 255U, 0xFFFFFFFFU})
            EXPECT_TRUE(get_width(table) <= 8 && is_switch_char(table, code) <= 3 &&
                        is_escape_char(table, code) <= 5 && (table == 0 || expand_char(table, code) <= 127));
}

TEST(CopyBits, CopiesAcrossBytesAndLeavesTheOthers) {
    const std::uint8_t source[] = {0xA5, 0x3C};
    std::uint8_t dest[] = {0xFF, 0x00, 0xFF};
    copy_bits(dest, 5, source, 3, 11);
    EXPECT_EQ(dest[0] << 16 | dest[1] << 8 | dest[2], 0xF94F << 8 | 0xFF);
}
