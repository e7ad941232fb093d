#include "app/files.h"

#include "app/checksum.h"
#include "app/desktop.h"
#include "app/paths.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <sys/types.h>

namespace {

constexpr int SIBLING_TRIES = 1000;

// A name for a new file in the folder of `name`, so that the new file can take the old one's place by a
// rename. Empty when all names are taken.
std::string sibling_name(const std::string& name) {
    for (int number = 0; number < SIBLING_TRIES; ++number) {
        std::string candidate = path_folder(name) + "~TOLVAN" + std::to_string(number) + ".TMP";
        if (!open_file(candidate, "rb"))
            return candidate;
    }
    return {};
}

bool write_file(const std::string& name, std::string_view bytes) {
    FILE_HANDLE file = open_file(name, "wb");
    if (!file)
        return false;
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size();
    // What the library still holds goes out at the close: a full disk may show only there.
    return std::fclose(file.release()) == 0 && written;
}

bool save_through_sibling(const std::string& name, std::string_view bytes, std::optional<int> checksum_type) {
    const std::string sibling = sibling_name(name);
    if (sibling.empty())
        return false;
    if (write_file(sibling, bytes) && (!checksum_type || write_checksum(sibling, *checksum_type)) &&
        replace_file(sibling, name))
        return true;
    static_cast<void>(std::remove(sibling.c_str())); // best effort: it is only a left-over
    return false;
}

std::string_view unread_bytes(const BYTE_READER& reader) {
    return reader.bytes.substr(std::min(reader.position, reader.bytes.size()));
}

// A number with its bytes as they stand in the image; those that the image lacks count as 0.
template <typename NUMBER>
NUMBER read_raw(BYTE_READER& reader) {
    const std::string_view bytes = unread_bytes(reader).substr(0, sizeof(NUMBER));
    NUMBER raw = 0;
    std::memcpy(&raw, bytes.data(), bytes.size());
    reader.position += bytes.size();
    reader.past_end |= bytes.size() < sizeof raw;
    return raw;
}

template <typename NUMBER>
void append_raw(std::string& image, NUMBER raw) {
    image.resize(image.size() + sizeof raw);
    std::memcpy(image.data() + image.size() - sizeof raw, &raw, sizeof raw);
}

} // namespace

FILE_HANDLE open_file(const std::string& name, const char* mode) {
    return FILE_HANDLE(std::fopen(name.c_str(), mode));
}

std::int64_t file_length(std::FILE* file) {
    const std::int64_t position = ftello(file);
    if (position < 0 || fseeko(file, 0, SEEK_END) != 0)
        return -1;
    const std::int64_t length = ftello(file);
    return seek_file(file, position) ? length : -1;
}

bool seek_file(std::FILE* file, std::int64_t position) {
    return fseeko(file, static_cast<off_t>(position), SEEK_SET) == 0;
}

std::optional<std::string> read_whole_file(std::FILE* file) {
    const std::int64_t length = file_length(file);
    if (length < 0 || !seek_file(file, 0))
        return {};
    std::string bytes;
    if (static_cast<std::uint64_t>(length) > bytes.max_size())
        throw std::bad_alloc();
    bytes.resize(static_cast<std::size_t>(length));
    if (std::fread(bytes.data(), 1, bytes.size(), file) != bytes.size())
        return {};
    return bytes;
}

bool save_with_checksum(const std::string& name, std::string_view bytes, int checksum_type) {
    return save_through_sibling(name, bytes, checksum_type);
}

bool save_whole_file(const std::string& name, std::string_view bytes) {
    return save_through_sibling(name, bytes, {});
}

std::uint8_t read_byte(BYTE_READER& reader) {
    return read_raw<std::uint8_t>(reader);
}

std::uint16_t read_word(BYTE_READER& reader) {
    auto value = read_raw<std::uint16_t>(reader);
    swap_word(&value);
    return value;
}

std::uint32_t read_long(BYTE_READER& reader) {
    auto value = read_raw<std::uint32_t>(reader);
    swap_long(&value);
    return value;
}

std::string_view read_string(BYTE_READER& reader) {
    const std::string_view rest = unread_bytes(reader);
    const std::size_t length = std::min(rest.find('\0'), rest.size());
    reader.position += length;
    read_byte(reader);
    return rest.substr(0, length);
}

std::string_view read_block(BYTE_READER& reader, std::size_t size) {
    const std::string_view block = unread_bytes(reader).substr(0, size);
    reader.position += size;
    reader.past_end |= block.size() < size;
    return block;
}

void append_byte(std::string& image, std::uint8_t value) {
    append_raw(image, value);
}

void append_word(std::string& image, std::uint16_t value) {
    swap_word(&value);
    append_raw(image, value);
}

void append_long(std::string& image, std::uint32_t value) {
    swap_long(&value);
    append_raw(image, value);
}

void append_text(std::string& image, std::string_view text) {
    image.append(text);
    image.push_back('\0');
}

void put_long(std::string& image, std::size_t position, std::uint32_t value) {
    std::string bytes;
    append_long(bytes, value);
    image.replace(position, bytes.size(), bytes);
}
