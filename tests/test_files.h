// Files of a test: a fresh folder, bytes in and out of it, and what opening a file comes to.
#pragma once

#include "app/checksum.h"
#include "app/files.h"
#include "tests/desktop_script.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <unistd.h>

inline void write_bytes(const std::string& name, const std::string& bytes) {
    std::filesystem::remove(name); // a file that is cut and written anew goes to the disk at once: minutes
    std::ofstream(name, std::ios::binary) << bytes;
}

inline std::string read_bytes(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline void expect_warning(const std::string& text, const std::string& caption) {
    expect_message(text, caption, MESSAGE_ICON::WARNING);
}

// What opening a file comes to: a result, and a warning unless its text is empty.
struct OUTCOME {
    int result;
    std::string text;
    std::string caption = "Open File";
};
inline const OUTCOME OPENED = {1, ""};

// What is no file of the system's own, though it may be one of the earlier model.
inline const OUTCOME QUENDAL = {0, "This is no Tolvan file, or a damaged one.\n"
                                   "A file of the Quendal terminal cannot be converted by this version:\n"
                                   "key its contents in anew, or ask for a Tolvan file."};

// A test with a folder of its own, at whose end every announced message must have been shown.
class FILE_TEST : public ::testing::Test {
protected:
    FILE_TEST() {
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
        reset_desktop();
    }
    ~FILE_TEST() override {
        for (const auto& message : reset_desktop())
            ADD_FAILURE() << "never shown: " << message.box;
        std::filesystem::remove_all(folder);
    }
    std::string path(const std::string& name) const {
        return folder + "/" + name;
    }
    // Names in the folder: a save must leave nothing behind but its file.
    std::size_t files_in_folder() const {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder),
                                                      std::filesystem::directory_iterator()));
    }
    // The bytes as a file with the length word and the checksum that fit them.
    std::string stamped(const std::string& bytes, int checksum_type) const {
        write_bytes(path("STAMPED"), with_length_word(bytes, bytes.size()));
        EXPECT_TRUE(write_checksum(path("STAMPED"), checksum_type));
        return read_bytes(path("STAMPED"));
    }
    static std::string with_length_word(std::string bytes, std::size_t length) {
        put_long(bytes, 0, static_cast<std::uint32_t>(length));
        return bytes;
    }

private:
    const ::testing::TestInfo& test = *::testing::UnitTest::GetInstance()->current_test_info();
    const std::string folder = ::testing::TempDir() + "tolvan_" + std::to_string(getpid()) + "_" +
                               test.test_suite_name() + "_" + test.name();
};
