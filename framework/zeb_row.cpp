#include "framework/zeb_row.h"

#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>

#include "framework/row_blocks.h"
#include "framework/text_convert.h"

static_assert(sizeof(ZebRow) == sizeof(void*));
static_assert(alignof(wchar_t) <= alignof(uint32_t));

ZebRow::Writer::Writer(ZebRow& row, size_t count, size_t chars) : m_row(row), m_count(count) {
    if (count == 0) {
        Finish();
        return;
    }
    // Ends are 32-bit: every cell's end, its L'\0' included, must fit.
    constexpr size_t kMax = std::numeric_limits<uint32_t>::max();
    if (count > kMax / 2 || chars > kMax - count) throw std::length_error("ZebRow: row too large");
    m_block = static_cast<uint32_t*>(zeb_row_blocks::Allocate((1 + count) * sizeof(uint32_t) +
                                                              (chars + count) * sizeof(wchar_t)));
    m_block[0] = static_cast<uint32_t>(count);
    m_text = reinterpret_cast<wchar_t*>(m_block + 1 + count);
}

ZebRow::Writer::~Writer() { zeb_row_blocks::Free(m_block); }

void ZebRow::Writer::Append(std::wstring_view text) {
    if (!text.empty()) std::memcpy(Room(), text.data(), text.size() * sizeof(wchar_t));
    Close(text.size());
}

void ZebRow::Writer::Close(size_t written) {
    m_used += written;
    m_text[m_used] = L'\0';
    m_block[1 + m_cell] = static_cast<uint32_t>(m_used);
    ++m_used;
    if (++m_cell == m_count) Finish();
}

void ZebRow::Writer::Finish() {
    m_row.Free();
    m_row.m_block = m_block;
    m_block = nullptr;
}

ZebRow ZebRow::FromUtf8(const std::string_view* cells, size_t count) {
    // A UTF-8 text never has more code points than bytes.
    size_t bytes = 0;
    for (size_t i = 0; i < count; ++i) bytes += cells[i].size();
    ZebRow row;
    Writer writer(row, count, bytes);
    for (size_t i = 0; i < count; ++i) writer.Close(Utf8ToWide(cells[i], writer.Room()));
    return row;
}

size_t ZebRow::Bytes() const {
    const size_t count = m_block[0];
    return (1 + count) * sizeof(uint32_t) + (Ends()[count - 1] + 1) * sizeof(wchar_t);
}

void ZebRow::Free() noexcept {
    zeb_row_blocks::Free(m_block);
    m_block = nullptr;
}

ZebRow::ZebRow(const ZebRow& other) {
    if (!other.m_block) return;
    const size_t bytes = other.Bytes();
    m_block = static_cast<uint32_t*>(zeb_row_blocks::Allocate(bytes));
    std::memcpy(m_block, other.m_block, bytes);
}

ZebRow& ZebRow::operator=(const ZebRow& other) {
    if (this != &other) {
        ZebRow copy(other);
        *this = std::move(copy);
    }
    return *this;
}

void ZebRow::Set(size_t i, std::wstring_view text) {
    const size_t count = size();
    if (i >= count) throw std::out_of_range("ZebRow::Set: no such cell");
    const std::wstring_view old = (*this)[i];
    if (old.size() == text.size()) {
        // Same length, same layout: the text is replaced where it stands.
        if (!text.empty())
            std::memmove(const_cast<wchar_t*>(old.data()), text.data(),
                         text.size() * sizeof(wchar_t));
        return;
    }
    // The old block stays until the new one is complete, so `text` may be one of its cells.
    Writer writer(*this, count, Ends()[count - 1] + 1 - count - old.size() + text.size());
    for (size_t k = 0; k < count; ++k) writer.Append(k == i ? text : (*this)[k]);
}

void ZebRow::push_back(std::wstring_view text) {
    const size_t count = size();
    Writer writer(*this, count + 1, (count ? Ends()[count - 1] + 1 - count : 0) + text.size());
    for (size_t k = 0; k < count; ++k) writer.Append((*this)[k]);
    writer.Append(text);
}

void ZebRow::resize(size_t count) {
    const size_t old = size();
    if (count == old) return;
    const size_t kept = count < old ? count : old;
    Writer writer(*this, count, kept ? Ends()[kept - 1] + 1 - kept : 0);
    for (size_t k = 0; k < count; ++k) writer.Append(k < kept ? (*this)[k] : std::wstring_view());
}

bool operator==(const ZebRow& a, const ZebRow& b) {
    // The block follows from the cells alone, so equal cells are equal bytes.
    if (!a.m_block || !b.m_block) return a.m_block == b.m_block;
    const size_t bytes = a.Bytes();
    return bytes == b.Bytes() && std::memcmp(a.m_block, b.m_block, bytes) == 0;
}
