// Every save with a fault at each of its file operations, and every reader and save with each of its
// allocations failing: nothing is lost, and the operator is told.
#include "fuzz/fuzz.h"

#include "app/files.h"
#include "files/FILEGEN.h"
#include "files/MEMORY.h"
#include "library/LIB.h"
#include "monitor/MONITOR_text.h"
#include "program/Prog.h"
#include "program/Prog_fields.h"
#include "program/Prog_file.h"
#include "setup/SETUP.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

#include <sys/types.h>

namespace {

std::size_t operations_to_fault; // the operation that this comes down to 0 at fails
bool read_failed;                // by such a fault

bool is_faulty() {
    return operations_to_fault > 0 && --operations_to_fault == 0;
}

} // namespace

// The linker puts these before the operations of the same name.
extern "C" {
std::FILE* __real_fopen64(const char* name, const char* mode);
std::size_t __real_fwrite(const void* data, std::size_t size, std::size_t count, std::FILE* file);
std::size_t __real_fread(void* data, std::size_t size, std::size_t count, std::FILE* file);
int __real_ferror(std::FILE* file);
int __real_fseeko64(std::FILE* file, off_t offset, int origin);
int __real_fclose(std::FILE* file);
int __real_rename(const char* from, const char* to);

std::FILE* __wrap_fopen64(const char* name, const char* mode) {
    return is_faulty() ? nullptr : __real_fopen64(name, mode);
}

// A full disk takes a part.
std::size_t __wrap_fwrite(const void* data, std::size_t size, std::size_t count, std::FILE* file) {
    return __real_fwrite(data, size, is_faulty() ? count / 2 : count, file);
}

// A failing disk gives a part, and the file remembers the error.
std::size_t __wrap_fread(void* data, std::size_t size, std::size_t count, std::FILE* file) {
    const bool fails = is_faulty();
    read_failed |= fails;
    return __real_fread(data, size, fails ? count / 2 : count, file);
}

int __wrap_ferror(std::FILE* file) {
    return read_failed ? 1 : __real_ferror(file);
}

int __wrap_fseeko64(std::FILE* file, off_t offset, int origin) {
    return is_faulty() ? -1 : __real_fseeko64(file, offset, origin);
}

int __wrap_fclose(std::FILE* file) {
    const int result = __real_fclose(file);
    return is_faulty() ? EOF : result;
}

int __wrap_rename(const char* from, const char* to) {
    return is_faulty() ? -1 : __real_rename(from, to);
}
}

namespace {

std::string bytes_of(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::size_t files_beside(const std::string& name) {
    const std::filesystem::directory_iterator folder(std::filesystem::path(name).parent_path()), end;
    return static_cast<std::size_t>(std::distance(folder, end));
}

// One kind of file: a document of it in memory, one of two, and its save and open. Both return whether they
// claim success.
struct KIND {
    const char* name;
    const char* extension;
    void (*prepare)(bool second);
    bool (*save)(const std::string& name);
    bool (*open)(const std::string& name);
    bool may_leave_part = false; // a library ends before a file that cannot be read
};

void prepare_program(bool second) {
    init_programming();
    free_prog_memory();
    field_list_selection = 0;
    insert_field();
    program_header.fields.back().prompt_string_handle = second ? "PRICE" : "ITEM";
}

bool save_program(const std::string& name) {
    return save_program_file(name) == 1;
}

bool open_program(const std::string& name) {
    init_programming();
    return open_program_file(nullptr, name) == 1;
}

void prepare_setup(bool second) {
    reset_setups();
    setup_record.BTERM = second;
}

bool save_setup(const std::string& name) {
    save_setup_file(name);
    return messages_shown == 0;
}

bool open_setup(const std::string& name) {
    return open_setup_file(name) == 1;
}

void prepare_records(bool second) {
    initialize_memory();
    for (int i = 0; i < 3000; ++i)
        add_record_entry(second ? "4006381333931" : "PENCIL,RED");
    data_program_name = "STOCK";
}

template <int FILE_TYPE>
bool save_records(const std::string& name) {
    return write_edit_file(nullptr, name, FILE_TYPE) > 0;
}

template <int FILE_TYPE>
bool open_records(const std::string& name) {
    return free_memchunks() != nullptr && read_edit_file(nullptr, name, FILE_TYPE) > 0;
}

// The library opens with the same list again, as the setup bears the name of its first file.
void prepare_library(bool second) {
    const std::string member = std::filesystem::current_path() / "FILE1.CFT";
    setup_record.BTERM = second;
    save_setup_file(member);
    librarian.files.assign(3, member);
}

bool save_library(const std::string& name) {
    return valid_sys_files(nullptr) == 1 && save_library_file(nullptr, name) == 1;
}

bool open_library(const std::string& name) {
    const std::size_t listed = librarian.files.size();
    const int result = open_library_file(nullptr, name);
    EXPECT_TRUE(result >= 0 || librarian.files.size() == listed);
    return result == 1;
}

void prepare_capture(bool second) {
    clear_captured_text();
    for (int i = 0; i < 3000; ++i)
        write_string(second ? "{F1}{Ctrl A}" : "SCANNED");
}

bool save_capture(const std::string& name) {
    return save_capture_file(nullptr, name);
}

bool open_capture(const std::string& name) {
    return open_capture_file(nullptr, name);
}

constexpr KIND KINDS[] = {
    {"program", ".PGT", prepare_program, save_program, open_program},
    {"setup", ".CFT", prepare_setup, save_setup, open_setup},
    {"lookup", ".LKT", prepare_records, save_records<LOOKUP_FILE_EDITED>, open_records<LOOKUP_FILE_EDITED>},
    {"data", ".DAT", prepare_records, save_records<DATA_FILE_EDITED>, open_records<DATA_FILE_EDITED>},
    {"library", ".LBT", prepare_library, save_library, open_library, true},
    {"capture", ".CAP", prepare_capture, save_capture, open_capture},
};

class Faults : public testing::TestWithParam<KIND> {
protected:
    // The answers to what a save asks follow from this text: a lookup file is saved in the system's form.
    void begin() {
        reset_seams("F");
    }
    std::string saved(bool second) {
        begin();
        const std::string name = input_file("", GetParam().extension);
        GetParam().prepare(second);
        EXPECT_TRUE(GetParam().save(name));
        return bytes_of(name);
    }
    // Saves over an old file with each of the faults that the counter counts down to.
    void expect_old_file_or_new_one(std::size_t& counter) {
        const std::string old_bytes = saved(false);
        const std::string new_bytes = saved(true);
        ASSERT_NE(old_bytes, new_bytes);
        bool faulted = true;
        for (std::size_t number = 1; faulted; ++number) {
            SCOPED_TRACE(number);
            begin();
            const std::string name = input_file(old_bytes, GetParam().extension);
            GetParam().prepare(true);
            const std::size_t files = files_beside(name);
            counter = number;
            const bool claimed = GetParam().save(name);
            faulted = counter == 0;
            counter = 0;
            const std::string left = bytes_of(name);
            const bool is_part =
                GetParam().may_leave_part && &counter == &operations_to_fault && new_bytes.starts_with(left);
            EXPECT_TRUE(left == old_bytes || left == new_bytes || is_part) << left.size();
            EXPECT_EQ(claimed, left == new_bytes);
            EXPECT_EQ(files_beside(name), files);
            ASSERT_LT(number, 1000);
        }
    }
};

TEST_P(Faults, LeaveTheOldFileOrTheNewOne) {
    expect_old_file_or_new_one(operations_to_fault);
}

TEST_P(Faults, OfMemoryLeaveTheOldFileOrTheNewOne) {
    expect_old_file_or_new_one(allocations_to_failure);
}

// What could be read of a file is never taken for all of it.
TEST_P(Faults, OfReadingAreNoShorterFiles) {
    const std::string bytes = saved(false);
    bool faulted = true;
    for (std::size_t operation = 1; faulted; ++operation) {
        SCOPED_TRACE(operation);
        begin();
        const std::string name = input_file(bytes, GetParam().extension);
        GetParam().prepare(false);
        operations_to_fault = operation;
        const bool opened = GetParam().open(name);
        faulted = operations_to_fault == 0;
        operations_to_fault = 0;
        read_failed = false;
        EXPECT_TRUE(!opened || (GetParam().save(name) && bytes_of(name) == bytes) ||
                    GetParam().may_leave_part);
        EXPECT_TRUE(opened || faulted);
    }
}

// Each allocation of an opening fails in turn. The program goes on, and claims nothing that is not so.
TEST_P(Faults, OfMemoryAreSurvived) {
    const std::string bytes = saved(false);
    bool faulted = true;
    for (std::size_t allocation = 1; faulted; allocation += 1 + allocation / 50) {
        SCOPED_TRACE(allocation);
        begin();
        const std::string name = input_file(bytes, GetParam().extension);
        GetParam().prepare(false);
        allocations_to_failure = allocation;
        const bool opened = GetParam().open(name);
        faulted = allocations_to_failure == 0;
        allocations_to_failure = 0;
        EXPECT_TRUE(opened || messages_shown > 0 || faulted);
        EXPECT_TRUE(!opened || !faulted || GetParam().save(name));
        EXPECT_TRUE(!opened || bytes_of(name) == bytes);
    }
}

// So they are where the file is taken out of a library, and nothing of it is left behind.
TEST(Extraction, SurvivesFaultsOfMemory) {
    reset_seams("F");
    save_setup(input_file("", ".CFT"));
    const std::string setup = bytes_of("FILE1.CFT");
    bool faulted = true;
    for (std::size_t allocation = 1; faulted; ++allocation) {
        SCOPED_TRACE(allocation);
        reset_seams("F"); // whose first answer is a member
        const std::string name = input_file(setup + setup, ".LBT");
        allocations_to_failure = allocation;
        const unsigned char result = open_setup_file(name);
        faulted = allocations_to_failure == 0;
        allocations_to_failure = 0;
        EXPECT_EQ(result == 1, messages_shown == 0);
        EXPECT_TRUE(result == 1 || faulted);
        EXPECT_TRUE(are_seams_clean());
    }
}

INSTANTIATE_TEST_SUITE_P(In, Faults, testing::ValuesIn(KINDS),
                         [](const auto& kind) { return kind.param.name; });

} // namespace
