// Library files: whole program, lookup and setup files one behind the other.
#pragma once

#include "app/TolvanP.h"

#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

// How every program, setup and lookup file starts. Bytes that a short file lacks count as 0.
struct FILE_START {
    std::uint32_t length; // the length word
    std::uint8_t type;    // the type byte
};
FILE_START read_file_start(std::FILE* file);

// A type byte, or the letter of a text, in upper case: setup and lookup files are taken with either.
std::uint8_t fold_type(std::uint8_t file_type);

// 1 when at least one byte stands between the file's position and its end and all of them are NUL, else 0.
// A block transfer pads a file so.
int is_null_padded(std::FILE* file);

// True when a program or setup file with this length word fills the whole file, but for NULs behind it.
// Otherwise it may be the first member of a library.
bool fills_file(std::FILE* file, std::uint32_t length);

// True when a file of this type byte can be a member of a library.
bool is_library_member_type(unsigned char file_type);

// The bytes that a system file of this length word and type byte claims, checksum included.
std::int64_t size_by_length(std::uint32_t length, std::uint8_t type);

// --- the members of a library file ---

struct LIBRARY_MEMBER {
    std::uint8_t type;  // as it stands in the file
    std::string name;   // as it stands in the file, at most 9 characters; empty for a setup
    std::int64_t start; // bytes
    std::int64_t size;  // bytes, checksum included; bounded by the file's end
};
// The members of an open library, in order. False at a type byte that none has, with those before it, and
// when they do not end. Types in lower case count when `folds_type` is set.
bool read_library_members(std::FILE* file, bool folds_type, std::vector<LIBRARY_MEMBER>& members);

// --- the librarian's list ---

inline constexpr std::size_t LIBRARY_FILE_LIMIT = 200;

struct LIBRARIAN {
    std::vector<std::string> files; // paths, in the library's order; the end row stands behind them
    std::size_t selected_row = 0;
    bool changed = false;
    std::string file_name; // the library's own path
};
extern LIBRARIAN librarian;

// Add before the end row and select it, insert before the selected row, delete the selected row. They set
// `changed` and show the list; the limit and the question before a deletion are the dialog's.
void library_list_add(WINDOW hDlg, const std::string& name);
void library_list_insert(WINDOW hDlg, const std::string& name);
void library_list_delete(WINDOW hDlg);

// The screen's part: shows the list and its selection. Tests have a body that does nothing.
void show_library_list(WINDOW hDlg);

// Lists the members of a library that are found as files, in the current folder or else in the library's, and
// shows the list. 1, with the library's path taken over and nothing changed; 0 when it cannot be opened or
// holds a foreign member (reported by the caller), with the list up to there; -1, with the list as it was,
// when memory runs out (reported).
int open_library_file(WINDOW hDlg, const std::string& filename);

// 1 when every listed file is there and is a system file, else 0 (reported).
int valid_sys_files(WINDOW hDlg);

// Writes the listed files as one library, each without the NULs that a transfer left behind it. 1, or 0
// (reported by the caller) when it cannot be written or is one of the listed files itself: an old file is
// then as it was, as with -1, when memory runs out (reported). 0 also when a listed file cannot be opened:
// the library then ends before it.
int save_library_file(WINDOW hDlg, const std::string& filename);

// --- one member as a file of its own ---

// Lets the operator choose from the rows; -1 when he cancels. The File Extraction dialog, which adds the end
// row; tests have a scripted body.
int choose_library_member(WINDOW owner, const std::vector<std::string>& rows);

// Lets the operator pick a member of the library `name` and leaves it in a temporary file whose path replaces
// `name`. Returns 1; 0 when the library is invalid or cannot be opened (reported by the caller); -1 when the
// operator cancels or the temporary file cannot be written (reported). std::bad_alloc passes.
int extract_library_file(WINDOW owner, std::string& name);

// Lets the operator pick a member of the library and has it read; what was extracted is deleted whatever
// comes of it. Returns what `read` returns or, without a member to read, what extract_library_file returned;
// -1 when memory runs out, in `read` too (reported).
std::int64_t read_library_member(WINDOW owner, const std::string& library,
                                 const std::function<std::int64_t(std::FILE*)>& read);
