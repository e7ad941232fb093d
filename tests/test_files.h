// Files of a test: a fresh folder, bytes in and out of it, and the damage that every kind of file must bear.
#pragma once

#include "app/checksum.h"
#include "app/files.h"
#include "library/LIB.h"
#include "tests/desktop_script.h"
#include "tests/library_script.h"

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

// Stands for what comes of a file that is taken for a library.
inline const OUTCOME LIBRARY = {0, "library"};

// What is no file of the system's own, though it may be one of the earlier model.
inline const OUTCOME QUENDAL = {0, "This is no Tolvan file, or a damaged one.\n"
                                   "A file of the Quendal terminal cannot be converted by this version:\n"
                                   "key its contents in anew, or ask for a Tolvan file."};

// A kind of file that starts with its length word and a type byte and ends with its checksum.
struct FILE_KIND {
    int (*open)(const std::string& name);
    int (*save)(const std::string& name);
    std::string good, sample; // the bytes of a short valid file and of a realistic one
    int checksum_type;
    OUTCOME other_type, bad_checksum;
    std::string no_file, not_saved, no_library; // texts of warnings
    int cancelled;
};

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
    // The bytes as a file with the length word and the checksum that fit them.
    std::string stamped(const std::string& bytes, int checksum_type) const {
        write_bytes(path("STAMPED"), with_length_word(bytes, bytes.size()));
        EXPECT_TRUE(write_checksum(path("STAMPED"), checksum_type));
        return read_bytes(path("STAMPED"));
    }
    std::string saved_bytes(const FILE_KIND& kind) const {
        EXPECT_EQ(kind.save(path("SAVED")), 1);
        return read_bytes(path("SAVED"));
    }
    void expect_outcome(const FILE_KIND& kind, const std::string& bytes, const OUTCOME& outcome) const {
        write_bytes(path("FILE"), bytes);
        if (outcome.text == LIBRARY.text)
            return expect_library(kind);
        if (!outcome.text.empty())
            expect_warning(outcome.text, outcome.caption);
        EXPECT_EQ(kind.open(path("FILE")), outcome.result);
    }
    // A damaged file may look like a library: its members are offered, or it is refused as one.
    void expect_library(const FILE_KIND& kind) const {
        std::vector<LIBRARY_MEMBER> members;
        if (read_library_members(open_file(path("FILE"), "rb").get(), true, members)) {
            expect_library_member({}, -1);
            EXPECT_EQ(kind.open(path("FILE")), kind.cancelled);
            EXPECT_TRUE(library_questions_asked());
            return;
        }
        if (!kind.no_library.empty())
            expect_warning(kind.no_library, "Invalid/Corrupt");
        EXPECT_EQ(kind.open(path("FILE")), 0);
    }
    // Opens the good file truncated at every byte, with every byte changed, and with every length word.
    void expect_damage_reported(const FILE_KIND& kind) const {
        const std::string& good = kind.good;
        const std::size_t length = good.size() - CHECKSUM_SIZE;
        for (std::size_t at = 0; at < good.size(); ++at) {
            SCOPED_TRACE(testing::Message() << "at byte " << at);
            // Two or three zeros are an empty file with its padding, and then no type.
            const OUTCOME& without_type = at == 2 || at == 3 ? kind.other_type : QUENDAL;
            expect_outcome(kind, good.substr(0, at), at < 5 ? without_type : LIBRARY);
            const OUTCOME& changed = at == 4 ? kind.other_type : kind.bad_checksum;
            for (const int change : {0x01, 0x80, 0xFF})
                expect_outcome(kind,
                               std::string(good).replace(at, 1, 1, static_cast<char>(good[at] ^ change)),
                               at < 4 ? LIBRARY : changed);
            if (at != length)
                expect_outcome(kind, with_length_word(good, at), LIBRARY);
            // Data may end too early even where length word and checksum are right.
            if (at >= 5 && at < length)
                expect_outcome(kind, stamped(good.substr(0, at), kind.checksum_type), kind.bad_checksum);
        }
        for (const std::uint32_t too_long : {0x7FFFFFFFU, 0xFFFFFFFDU, 0xFFFFFFFEU, 0xFFFFFFFFU})
            expect_outcome(kind, with_length_word(good, too_long), LIBRARY);
    }
    // What else opening and saving come to, with whole files and with none.
    void expect_outcomes(const FILE_KIND& kind) const {
        for (const std::size_t padding : {1U, 5000U}) {
            expect_outcome(kind, kind.good + std::string(padding, '\0'), OPENED);
            expect_outcome(kind, kind.good + std::string(padding, '\0') + 'x', LIBRARY);
        }
        for (const char type : std::string("IRSQ"))
            expect_outcome(kind, std::string(kind.good).replace(4, 1, 1, type) + 'x',
                           type == 'Q' ? QUENDAL : LIBRARY);
        expect_warning(kind.no_file, "Open File");
        EXPECT_EQ(kind.open(path("NO FILE")), 0);
        expect_outcome(kind, kind.sample, OPENED);
        EXPECT_EQ(saved_bytes(kind), kind.sample);
        expect_warning(kind.not_saved, "Save File");
        kind.save(path("NO FOLDER/SAVED"));
    }
    static std::string with_length_word(std::string bytes, std::size_t length) {
        put_long(bytes, 0, static_cast<std::uint32_t>(length));
        return bytes;
    }

private:
    const std::string folder = ::testing::TempDir() + "tolvan_" + std::to_string(getpid()) + "_" +
                               ::testing::UnitTest::GetInstance()->current_test_info()->test_suite_name() +
                               "_" + ::testing::UnitTest::GetInstance()->current_test_info()->name();
};
