// Files of a test: a fresh folder for each, and bytes in and out of it in one go.
#pragma once

#include "tests/desktop_script.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

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
            ADD_FAILURE() << "never shown: " << message.text;
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

private:
    const std::string folder = ::testing::TempDir() + "tolvan_" +
                               ::testing::UnitTest::GetInstance()->current_test_info()->test_suite_name() +
                               "_" + ::testing::UnitTest::GetInstance()->current_test_info()->name();
};

inline void write_bytes(const std::string& name, const std::string& bytes) {
    std::ofstream(name, std::ios::binary) << bytes;
}

inline std::string read_bytes(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline void expect_warning(const std::string& text, const std::string& caption) {
    expect_message(text, caption, MESSAGE_ICON::WARNING);
}

// The refusals that stand in for what later versions do with these files.
inline void expect_library_refusal() {
    expect_warning(
        "This version cannot take a file out of a library yet.\nIf the file is no library, it is damaged.",
        "Open File");
}
inline void expect_quendal_refusal() {
    expect_warning("This version cannot read files of the Quendal terminal yet.\n"
                   "If the file is a Tolvan file, it is damaged.",
                   "Open File");
}
