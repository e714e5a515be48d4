#pragma once

#include <gtest/gtest.h>
#include <xlsxwriter.h>
#include <zip.h>

#include <filesystem>
#include <map>
#include <string>
#include <variant>
#include <vector>

// A cell of a test sheet: nothing, a text or a number.
using SheetCell = std::variant<std::monostate, std::string, double>;

// Writes an ".xlsx" workbook of one sheet, row by row, with libxlsxwriter.
inline void WriteSheet(const std::filesystem::path& path,
                       const std::vector<std::vector<SheetCell>>& rows) {
    lxw_workbook* workbook = workbook_new(path.c_str());
    lxw_worksheet* sheet = workbook_add_worksheet(workbook, nullptr);
    for (size_t r = 0; r < rows.size(); ++r) {
        for (size_t c = 0; c < rows[r].size(); ++c) {
            const auto row = static_cast<lxw_row_t>(r);
            const auto column = static_cast<lxw_col_t>(c);
            if (const auto* text = std::get_if<std::string>(&rows[r][c]))
                worksheet_write_string(sheet, row, column, text->c_str(), nullptr);
            else if (const auto* number = std::get_if<double>(&rows[r][c]))
                worksheet_write_number(sheet, row, column, *number, nullptr);
        }
    }
    ASSERT_EQ(workbook_close(workbook), LXW_NO_ERROR);
}

// `text` `count` times over, for parts no writer would make.
inline std::string Repeat(const std::string& text, size_t count) {
    std::string out;
    out.reserve(text.size() * count);
    for (size_t i = 0; i < count; ++i) out += text;
    return out;
}

// Writes a ZIP archive with the given entries, for packages no writer would make.
inline void WriteZip(const std::filesystem::path& path,
                     const std::map<std::string, std::string>& entries) {
    int error = 0;
    zip_t* zip = zip_open(path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    ASSERT_NE(zip, nullptr);
    for (const auto& [name, content] : entries) {
        zip_source_t* source = zip_source_buffer(zip, content.data(), content.size(), 0);
        ASSERT_GE(zip_file_add(zip, name.c_str(), source, ZIP_FL_OVERWRITE), 0);
    }
    ASSERT_EQ(zip_close(zip), 0);
}
