#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>
#include <stdexcept>
#include <type_traits>
#include <utility>

// The framework's growable array. Its growth rule is part of the framework's observable
// behaviour (capacity), so it is kept exactly: a full array grows by the step, and the step
// grows by 3 while below 10, then by a factor 1.2 (integer part). Elements are real objects:
// constructed, moved and destroyed, never copied bytewise.
template <class T>
class ZebArray {
public:
    ZebArray() { Reset(); }
    ~ZebArray() { Release(); }

    ZebArray(const ZebArray& other) { CopyFrom(other); }
    ZebArray& operator=(const ZebArray& other) {
        if (this != &other) {
            Release();
            CopyFrom(other);
        }
        return *this;
    }
    ZebArray(ZebArray&& other) noexcept { Steal(other); }
    ZebArray& operator=(ZebArray&& other) noexcept {
        if (this != &other) {
            Release();
            Steal(other);
        }
        return *this;
    }

    int32_t GetSize() const { return m_size; }
    int32_t GetCapacity() const { return m_capacity; }
    int32_t GetGrowStep() const { return m_growBy; }
    bool IsEmpty() const { return m_size == 0; }

    T& operator[](int32_t i) { return m_data[i]; }
    const T& operator[](int32_t i) const { return m_data[i]; }
    T& GetAt(int32_t i) {
        CheckIndex(i);
        return m_data[i];
    }
    const T& GetAt(int32_t i) const {
        CheckIndex(i);
        return m_data[i];
    }

    T* begin() { return m_data; }
    T* end() { return m_data + m_size; }
    const T* begin() const { return m_data; }
    const T* end() const { return m_data + m_size; }

    void Add(const T& value) {
        if (m_size == m_capacity) {
            T copy(value);  // value may live in this array
            Grow();
            new (m_data + m_size) T(std::move(copy));
        } else {
            new (m_data + m_size) T(value);
        }
        ++m_size;
    }
    void Add(T&& value) {
        if (m_size == m_capacity) {
            T moved(std::move(value));
            Grow();
            new (m_data + m_size) T(std::move(moved));
        } else {
            new (m_data + m_size) T(std::move(value));
        }
        ++m_size;
    }

    // Moves `count` elements from `first` to the end, in order, leaving the array as adding them
    // one by one would (capacity and step included), with one allocation instead of one for every
    // growth: tables add hundreds of thousands of rows at a time.
    void AddMoved(T* first, int32_t count) {
        int32_t capacity = m_capacity;
        int32_t step = m_growBy;
        while (capacity - m_size < count) {
            capacity += step;
            step = NextStep(step);
        }
        if (capacity != m_capacity) Reallocate(capacity);
        m_growBy = step;
        for (int32_t i = 0; i < count; ++i) new (m_data + m_size++) T(std::move(first[i]));
    }

    // Shifts the tail down by one.
    void RemoveAt(int32_t index) {
        CheckIndex(index);
        std::move(m_data + index + 1, m_data + m_size, m_data + index);
        m_data[m_size - 1].~T();
        --m_size;
    }

    // Back to the initial state: capacity 10, step 1, no elements.
    void Reset() {
        Release();
        Allocate(10);
        m_growBy = 1;
    }
    void RemoveAll() { Reset(); }

private:
    void CheckIndex(int32_t i) const {
        if (i < 0 || i >= m_size) throw std::out_of_range("ZebArray index out of range");
    }
    void Allocate(int32_t capacity) {
        m_data =
            static_cast<T*>(::operator new(sizeof(T) * capacity, std::align_val_t(alignof(T))));
        std::memset(static_cast<void*>(m_data), 0, sizeof(T) * capacity);
        m_capacity = capacity;
        m_size = 0;
    }
    static int32_t NextStep(int32_t step) {
        return step < 10 ? step + 3 : static_cast<int32_t>(step * 1.2);
    }
    void Grow() {
        Reallocate(m_capacity + m_growBy);
        m_growBy = NextStep(m_growBy);
    }
    void Reallocate(int32_t newCapacity) {
        T* block =
            static_cast<T*>(::operator new(sizeof(T) * newCapacity, std::align_val_t(alignof(T))));
        std::memset(static_cast<void*>(block), 0, sizeof(T) * newCapacity);
        for (int32_t i = 0; i < m_size; ++i) {
            new (block + i) T(std::move(m_data[i]));
            m_data[i].~T();
        }
        ::operator delete(m_data, std::align_val_t(alignof(T)));
        m_data = block;
        m_capacity = newCapacity;
    }
    void Release() {
        if (!m_data) return;
        for (int32_t i = 0; i < m_size; ++i) m_data[i].~T();
        ::operator delete(m_data, std::align_val_t(alignof(T)));
        m_data = nullptr;
        m_size = m_capacity = 0;
    }
    void CopyFrom(const ZebArray& other) {
        Allocate(other.m_capacity);
        m_growBy = other.m_growBy;
        for (int32_t i = 0; i < other.m_size; ++i) new (m_data + i) T(other.m_data[i]);
        m_size = other.m_size;
    }
    void Steal(ZebArray& other) {
        m_data = other.m_data;
        m_size = other.m_size;
        m_capacity = other.m_capacity;
        m_growBy = other.m_growBy;
        other.m_data = nullptr;
        other.Reset();
    }

    T* m_data = nullptr;
    int32_t m_size = 0;
    int32_t m_capacity = 0;
    int32_t m_growBy = 1;
};
