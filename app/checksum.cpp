#include "app/checksum.h"

#include "app/desktop.h"
#include "app/files.h"

#include <algorithm>
#include <array>
#include <bit>

namespace {

constexpr std::uint16_t POLYNOMIAL = 0x1021;
constexpr std::size_t SLICES = 8; // bytes that crc_block folds at a time

using SLICE_TABLES = std::array<std::array<std::uint16_t, 256>, SLICES>;

// Row n holds the checksum of each byte followed by n zero bytes, so that the contributions of eight bytes in
// a row can be looked up side by side instead of one after another.
constexpr SLICE_TABLES make_slice_tables() {
    SLICE_TABLES tables{};
    for (std::size_t byte = 0; byte < 256; ++byte) {
        auto crc = static_cast<std::uint16_t>(byte << 8);
        for (int bit = 0; bit < 8; ++bit)
            crc = static_cast<std::uint16_t>((crc << 1) ^ ((crc & 0x8000) != 0 ? POLYNOMIAL : 0));
        tables[0][byte] = crc;
    }
    for (std::size_t row = 1; row < SLICES; ++row)
        for (std::size_t byte = 0; byte < 256; ++byte) {
            const std::uint16_t before = tables[row - 1][byte];
            tables[row][byte] = static_cast<std::uint16_t>((before << 8) ^ tables[0][before >> 8]);
        }
    return tables;
}
constexpr SLICE_TABLES TABLES = make_slice_tables();

constexpr std::size_t BLOCK_SIZE = 128;             // bytes between two redraws of the bar
constexpr std::size_t READ_SIZE = 256 * BLOCK_SIZE; // bytes read at a time
constexpr std::int64_t FILE_TYPE_OFFSET = 4;        // the type byte behind the length word
constexpr std::int64_t LOOKUP_HEADER_SIZE = 22;     // bytes
constexpr std::int64_t LOOKUP_CHECKSUM_OFFSET = 20;

bool stands_in_header(int checksum_type) {
    return checksum_type == LOOKUP_CHECKSUM;
}

// Where folding in blocks starts; also the least length that a file of the type can have.
std::int64_t block_start(int checksum_type) {
    switch (checksum_type) {
    case PROGRAM_CHECKSUM:
        return FILE_TYPE_OFFSET + 1;
    case LOOKUP_CHECKSUM:
        return LOOKUP_HEADER_SIZE;
    default:
        return 0;
    }
}

std::int64_t checksum_offset(int checksum_type, std::int64_t length) {
    return stands_in_header(checksum_type) ? LOOKUP_CHECKSUM_OFFSET : length;
}

// A length word is a claim: it must leave room for the type byte and must fit the file.
bool length_fits(int checksum_type, std::int64_t length, std::int64_t file_size) {
    const std::int64_t least = std::max(block_start(checksum_type), FILE_TYPE_OFFSET + 1);
    const std::int64_t end = stands_in_header(checksum_type) ? length : length + std::int64_t{CHECKSUM_SIZE};
    return length >= least && end <= file_size;
}

// The part of a file that a checksum is being taken of.
struct FOLDING {
    std::FILE* file;
    int checksum_type;
    std::int64_t length; // bytes before the appended checksum; of a lookup file: all
    STATUS_BOX* box;     // may be nullptr
};

void show_position(const FOLDING& folding, std::int64_t position) {
    if (folding.box != nullptr)
        update_status_bar(folding.box, position, folding.length);
}

// The type byte and the checksum itself stand inside a lookup file's header and are left out.
bool fold_lookup_header(const FOLDING& folding, std::uint16_t* checksum) {
    std::array<char, LOOKUP_HEADER_SIZE> header;
    if (std::fread(header.data(), 1, header.size(), folding.file) != header.size())
        return false;
    for (std::int64_t offset = 0; offset < LOOKUP_HEADER_SIZE; ++offset) {
        if (offset != FILE_TYPE_OFFSET && offset < LOOKUP_CHECKSUM_OFFSET)
            crc_16(static_cast<std::uint8_t>(header[static_cast<std::size_t>(offset)]), checksum);
        show_position(folding, offset + 1);
    }
    return true;
}

// Folds what ends at `end`, a block between two redraws.
void fold_piece(const FOLDING& folding, std::int64_t end, std::string_view piece, std::uint16_t* checksum) {
    while (!piece.empty()) {
        const std::string_view block = piece.substr(0, BLOCK_SIZE);
        crc_block(block, checksum);
        piece.remove_prefix(block.size());
        show_position(folding, end - static_cast<std::int64_t>(piece.size()));
    }
}

bool fold_file(const FOLDING& folding, std::uint16_t* checksum) {
    *checksum = 0;
    const bool in_header = stands_in_header(folding.checksum_type);
    std::int64_t position = block_start(folding.checksum_type);
    if (!seek_file(folding.file, in_header ? 0 : position))
        return false;
    show_position(folding, 0);
    if (in_header && !fold_lookup_header(folding, checksum))
        return false;
    while (position < folding.length) {
        std::array<char, READ_SIZE> piece;
        const auto wanted =
            static_cast<std::size_t>(std::min<std::int64_t>(READ_SIZE, folding.length - position));
        if (std::fread(piece.data(), 1, wanted, folding.file) != wanted)
            return false;
        position += static_cast<std::int64_t>(wanted);
        fold_piece(folding, position, {piece.data(), wanted}, checksum);
    }
    return true;
}

bool read_length_word(std::FILE* file, std::uint32_t* length) {
    if (!seek_file(file, 0) || std::fread(length, sizeof *length, 1, file) != 1)
        return false;
    swap_long(length);
    return true;
}

bool read_stored_checksum(std::FILE* file, std::int64_t offset, std::uint16_t* stored) {
    if (!seek_file(file, offset) || std::fread(stored, sizeof *stored, 1, file) != 1)
        return false;
    swap_word(stored);
    return true;
}

bool verify(std::FILE* file, int checksum_type, STATUS_BOX* box) {
    std::uint32_t length = 0;
    if (!read_length_word(file, &length) || !length_fits(checksum_type, length, file_length(file)))
        return false;
    std::uint16_t computed = 0;
    std::uint16_t stored = 0;
    return fold_file({file, checksum_type, length, box}, &computed) &&
           read_stored_checksum(file, checksum_offset(checksum_type, length), &stored) && stored == computed;
}

} // namespace

void crc_16(std::uint8_t c, std::uint16_t* checksum) {
    *checksum = static_cast<std::uint16_t>((*checksum << 8) ^ TABLES[0][(*checksum >> 8) ^ c]);
}

void crc_update(std::uint8_t byte, std::uint16_t& crc) {
    crc_16(byte, &crc);
}

void crc_block(std::string_view bytes, std::uint16_t* checksum) {
    const auto* next = reinterpret_cast<const std::uint8_t*>(bytes.data());
    std::size_t left = bytes.size();
    unsigned crc = *checksum;
    for (; left >= SLICES; left -= SLICES, next += SLICES)
        crc = unsigned{TABLES[7][next[0] ^ (crc >> 8)]} ^ TABLES[6][next[1] ^ (crc & 0xFF)] ^
              TABLES[5][next[2]] ^ TABLES[4][next[3]] ^ TABLES[3][next[4]] ^ TABLES[2][next[5]] ^
              TABLES[1][next[6]] ^ TABLES[0][next[7]];
    *checksum = static_cast<std::uint16_t>(crc);
    for (; left > 0; --left, ++next)
        crc_16(*next, checksum);
}

// Swapping turns a number of the host into one of the files, and back.
static_assert(std::endian::native == std::endian::little);

void swap_word(std::uint16_t* word_value) {
    *word_value = static_cast<std::uint16_t>((*word_value >> 8) | (*word_value << 8));
}

void swap_long(std::uint32_t* long_value) {
    const std::uint32_t value = *long_value;
    *long_value = (value >> 24) | ((value >> 8) & 0xFF00) | ((value << 8) & 0xFF0000) | (value << 24);
}

bool isvalid_checksum(std::FILE* hfile, int checksum_type) {
    STATUS_BOX* box = open_status_box(STATUS_CHECKSUM);
    const bool valid = verify(hfile, checksum_type, box);
    close_status_box(box);
    return valid;
}

bool write_checksum(const std::string& file_name, int checksum_type) {
    FILE_HANDLE file = open_file(file_name, "r+b");
    if (!file)
        return false;
    const std::int64_t length = file_length(file.get());
    std::uint16_t checksum = 0;
    if (length < 0 || !fold_file({file.get(), checksum_type, length, nullptr}, &checksum))
        return false;
    swap_word(&checksum);
    return seek_file(file.get(), checksum_offset(checksum_type, length)) &&
           std::fwrite(&checksum, sizeof checksum, 1, file.get()) == 1 && std::fclose(file.release()) == 0;
}
