#include "files/FILEGEN_edits.h"

#include "app/desktop.h"
#include "files/MEMORY.h"

std::uint32_t record_entry_total = 0;

namespace {

constexpr std::uint32_t UPDATE_INTERVAL = 1024; // edits between two looks at the progress box

void show_edits_done(STATUS_BOX* box, std::uint32_t edits, std::int64_t position, std::int64_t size) {
    if (edits % UPDATE_INTERVAL == 0)
        update_status_bar(box, position, size);
}

char* skip_records(char* record, std::uint32_t count) {
    for (; count > 0 && *record != END_OF_RECORDS; --count)
        record = goto_next_record(record);
    return record;
}

// Edits the record of the start line and every one that `edit` leads to: it returns the cursor of the next,
// `interval` lines on, or nullptr when memory ran out.
template <typename EDIT>
bool repeat_edit(int mode, std::uint32_t start_line, std::uint32_t interval, EDIT edit) {
    const std::uint32_t lines = record_entry_total;
    STATUS_BOX* box = open_status_box(mode);
    char* record = goto_record(start_line - 1);
    for (std::uint32_t edits = 0; record != nullptr && *record != END_OF_RECORDS; ++edits) {
        show_edits_done(box, edits, start_line + std::int64_t{edits} * interval, lines);
        record = edit(record);
    }
    close_status_box(box);
    return record != nullptr;
}

} // namespace

bool repeat_add(std::uint32_t count, std::string_view text) {
    STATUS_BOX* box = open_status_box(STATUS_REPEAT_ADD);
    std::uint32_t added = 0;
    for (; added < count && add_record_entry(text) != 0; ++added) {
        ++record_entry_total;
        show_edits_done(box, added, added, count);
    }
    close_status_box(box);
    return added == count;
}

bool repeat_insert(std::uint32_t start_line, std::uint32_t interval, std::string_view text) {
    return repeat_edit(STATUS_REPEAT_INSERT, start_line, interval, [&](char* record) {
        record = insert_record_entry(record, text);
        if (record == nullptr)
            return record;
        ++record_entry_total;
        return skip_records(record, interval + 1);
    });
}

bool repeat_delete(std::uint32_t start_line, std::uint32_t interval) {
    return repeat_edit(STATUS_REPEAT_DELETE, start_line, interval, [&](char* record) {
        record = delete_record_entry(record);
        --record_entry_total;
        return skip_records(record, interval - 1);
    });
}
