// Upgrade files of the portable's flash memory: their check, and the line settings they are sent with.
//
// File of n bytes: offset 0, 4 bytes, the portable's own; 4, n - 6, image; n - 2, 2, CRC of the image, high
// byte first. It is sent whole.
#include "comm/PCOM.h"

#include "app/checksum.h"
#include "app/files.h"

namespace {

constexpr std::int64_t PREFIX_SIZE = 4; // bytes, as are all sizes
constexpr std::size_t READ_SIZE = std::size_t{64} * 1024;

// Images are checked in pieces of this size, and the CRC must lie whole in the last one, which is short: no
// file of another length is a valid upgrade, even where its CRC would fit.
constexpr std::int64_t PIECE_SIZE = 4096;

bool is_flash_length(std::int64_t length) {
    return length >= PREFIX_SIZE && (length - PREFIX_SIZE) % PIECE_SIZE >= std::int64_t{CHECKSUM_SIZE};
}

} // namespace

bool isflash_file(const std::string& file_name) {
    const FILE_HANDLE file = open_file(file_name, "rb");
    if (!file || !is_flash_length(file_length(file.get())) || !seek_file(file.get(), PREFIX_SIZE))
        return false;
    std::string piece(READ_SIZE, '\0');
    std::uint16_t crc = 0;
    while (const std::size_t count = std::fread(piece.data(), 1, piece.size(), file.get()))
        crc_block({piece.data(), count}, &crc);
    return std::ferror(file.get()) == 0 && crc == 0; // bytes followed by their own CRC have the CRC 0
}

void force_flash_settings() {
    comm_settings.baudrate = 38400;
    comm_settings.databits = 8;
    comm_settings.stopbits = 1;
    comm_settings.parity = NO_PARITY;
    comm_settings.protocol = PROTOCOL_XMODEM;
    comm_settings.flow_control = FLOW_NONE;
    comm_settings.interface_mode = INTERFACE_DIRECT;
}
