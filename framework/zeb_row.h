#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <string>
#include <string_view>

#include "framework/vantor_export.h"

// One row of a table parameter: an ordered list of texts, held in one allocation. Tables reach
// hundreds of thousands of rows; a string per cell would cost an allocation and a string object
// for every cell.
//
// The block is [uint32 cell count][uint32 end of each cell][text of all cells, each followed by
// L'\0']. The end of a cell is the index of its terminating L'\0' in the text, so a cell may
// itself hold L'\0' and keeps it; only the XML writer stops at it, as an attribute cannot carry it.
// No cells is a null block. Cells are read as views that stay valid until the row changes.
class VANTOR_FW_API ZebRow {
public:
    class const_iterator {
    public:
        using iterator_category = std::random_access_iterator_tag;
        using value_type = std::wstring_view;
        using difference_type = std::ptrdiff_t;
        using pointer = void;
        using reference = std::wstring_view;

        const_iterator() = default;
        const_iterator(const ZebRow* row, size_t index) : m_row(row), m_index(index) {}
        std::wstring_view operator*() const { return (*m_row)[m_index]; }
        std::wstring_view operator[](difference_type n) const { return (*m_row)[m_index + n]; }
        const_iterator& operator++() {
            ++m_index;
            return *this;
        }
        const_iterator operator++(int) {
            const_iterator old = *this;
            ++m_index;
            return old;
        }
        const_iterator& operator--() {
            --m_index;
            return *this;
        }
        const_iterator operator--(int) {
            const_iterator old = *this;
            --m_index;
            return old;
        }
        const_iterator& operator+=(difference_type n) {
            m_index += n;
            return *this;
        }
        const_iterator& operator-=(difference_type n) {
            m_index -= n;
            return *this;
        }
        friend const_iterator operator+(const_iterator it, difference_type n) { return it += n; }
        friend const_iterator operator+(difference_type n, const_iterator it) { return it += n; }
        friend const_iterator operator-(const_iterator it, difference_type n) { return it -= n; }
        friend difference_type operator-(const_iterator a, const_iterator b) {
            return static_cast<difference_type>(a.m_index) -
                   static_cast<difference_type>(b.m_index);
        }
        friend bool operator==(const_iterator a, const_iterator b) {
            return a.m_index == b.m_index;
        }
        friend auto operator<=>(const_iterator a, const_iterator b) {
            return a.m_index <=> b.m_index;
        }

    private:
        const ZebRow* m_row = nullptr;
        size_t m_index = 0;
    };

    using iterator = const_iterator;
    using value_type = std::wstring_view;

    ZebRow() noexcept = default;
    ZebRow(std::initializer_list<std::wstring_view> cells) : ZebRow(cells.begin(), cells.end()) {}
    // Cells from any forward range of texts (std::wstring, std::wstring_view, wide literals).
    template <class It>
    requires std::forward_iterator<It> &&
        std::convertible_to<std::iter_reference_t<It>, std::wstring_view>
        ZebRow(It first, It last) {
        size_t count = 0, chars = 0;
        for (It it = first; it != last; ++it, ++count) chars += std::wstring_view(*it).size();
        Writer writer(*this, count, chars);
        for (; first != last; ++first) writer.Append(std::wstring_view(*first));
    }
    template <class Range>
    requires requires(const Range& r) { ZebRow(std::begin(r), std::end(r)); }
    explicit ZebRow(const Range& cells) : ZebRow(std::begin(cells), std::end(cells)) {}

    // Cells given as UTF-8, converted as FromUtf8 converts, straight into the row's block.
    static ZebRow FromUtf8(const std::string_view* cells, size_t count);

    ZebRow(const ZebRow& other);
    ZebRow& operator=(const ZebRow& other);
    ZebRow(ZebRow&& other) noexcept : m_block(other.m_block) { other.m_block = nullptr; }
    ZebRow& operator=(ZebRow&& other) noexcept {
        if (this != &other) {
            Free();
            m_block = other.m_block;
            other.m_block = nullptr;
        }
        return *this;
    }
    ~ZebRow() { Free(); }

    size_t size() const { return m_block ? m_block[0] : 0; }
    bool empty() const { return !m_block; }

    // Cell `i` < size(), up to its own end (an embedded L'\0' included).
    std::wstring_view operator[](size_t i) const {
        const size_t start = i == 0 ? 0 : Ends()[i - 1] + 1;
        return std::wstring_view(Text() + start, Ends()[i] - start);
    }
    // Cell `i` < size(), terminated by L'\0'.
    const wchar_t* CellText(size_t i) const { return Text() + (i == 0 ? 0 : Ends()[i - 1] + 1); }
    // A copy of cell `i` < size().
    std::wstring Cell(size_t i) const { return std::wstring((*this)[i]); }

    // Replaces cell `i`; std::out_of_range when there is no such cell. `text` may be a view of
    // this row.
    void Set(size_t i, std::wstring_view text);
    void push_back(std::wstring_view text);
    // Added cells are empty.
    void resize(size_t count);
    void clear() { Free(); }

    const_iterator begin() const { return const_iterator(this, 0); }
    const_iterator end() const { return const_iterator(this, size()); }

    friend VANTOR_FW_API bool operator==(const ZebRow& a, const ZebRow& b);

private:
    // Fills a new block of `count` cells with `chars` characters in all, cell after cell, and
    // gives it to the row when the last cell is in. `chars` may be more than is used.
    class VANTOR_FW_API Writer {
    public:
        Writer(ZebRow& row, size_t count, size_t chars);
        ~Writer();
        Writer(const Writer&) = delete;
        Writer& operator=(const Writer&) = delete;
        void Append(std::wstring_view text);
        // Where the current cell's text goes; Close(n) ends the cell after n characters there.
        wchar_t* Room() const { return m_text + m_used; }
        void Close(size_t written);

    private:
        void Finish();
        ZebRow& m_row;
        uint32_t* m_block = nullptr;
        wchar_t* m_text = nullptr;
        size_t m_count = 0;
        size_t m_cell = 0;
        size_t m_used = 0;
    };

    uint32_t* Ends() const { return m_block + 1; }
    wchar_t* Text() const { return reinterpret_cast<wchar_t*>(m_block + 1 + m_block[0]); }
    size_t Bytes() const;
    void Free() noexcept;

    uint32_t* m_block = nullptr;
};
