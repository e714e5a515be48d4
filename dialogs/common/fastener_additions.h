#pragma once

#include <string>
#include <utility>
#include <vector>

class QWidget;

// What spreadsheet imports bring into a fastener table while its dialog is open, kept for the
// database on OK: fastener names, and thread texts with the fastener name each belongs to.
struct FastenerAdditions {
    std::vector<std::wstring> names;
    // (thread text, fastener name)
    std::vector<std::pair<std::wstring, std::wstring>> threads;

    void RecordName(const std::wstring& name) { names.push_back(name); }
    void RecordThread(const std::wstring& thread, const std::wstring& name) {
        threads.emplace_back(thread, name);
    }
};

// Adds to the database what it lacks: each name the fastener names do not hold (names compared
// without regard to case, as the database does), then each thread text the fastener thread
// attributes do not hold for its name. A list that cannot be read skips its part. The first
// addition that fails is reported (error icon) and ends the additions. Without a database
// nothing happens.
void AddToFastenerDatabase(QWidget* parent, const FastenerAdditions& additions);
