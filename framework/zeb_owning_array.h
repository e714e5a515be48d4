#pragma once

#include <memory>
#include <utility>

#include "framework/zeb_array.h"

// A ZebArray of pointers that owns what they point to: an element goes when it is removed or
// when the array goes, and copying the array copies the elements. Reads like ZebArray<T*>, with
// the framework's growth rule, but no element can be shared or leaked through it.
template <class T>
class ZebOwningArray {
public:
    ZebOwningArray() = default;
    ~ZebOwningArray() { DeleteElements(); }

    ZebOwningArray(const ZebOwningArray& other) {
        for (const T* item : other) Add(std::make_unique<T>(*item));
    }
    ZebOwningArray& operator=(const ZebOwningArray& other) {
        if (this != &other) {
            ZebOwningArray copy(other);
            std::swap(m_items, copy.m_items);
        }
        return *this;
    }
    ZebOwningArray(ZebOwningArray&& other) noexcept : m_items(std::move(other.m_items)) {}
    ZebOwningArray& operator=(ZebOwningArray&& other) noexcept {
        if (this != &other) {
            DeleteElements();
            m_items = std::move(other.m_items);
        }
        return *this;
    }

    int32_t GetSize() const { return m_items.GetSize(); }
    int32_t GetCapacity() const { return m_items.GetCapacity(); }
    bool IsEmpty() const { return m_items.IsEmpty(); }

    T* operator[](int32_t i) const { return m_items[i]; }
    T* const* begin() const { return m_items.begin(); }
    T* const* end() const { return m_items.end(); }

    // Takes ownership of `item`.
    void Add(std::unique_ptr<T> item) {
        m_items.Add(item.get());
        item.release();
    }
    void Add(T* item) { Add(std::unique_ptr<T>(item)); }

    // Destroys the element and shifts the tail down.
    void RemoveAt(int32_t index) {
        T* item = m_items.GetAt(index);
        m_items.RemoveAt(index);
        delete item;
    }
    // Destroys every element; the array is back to its initial state.
    void RemoveAll() {
        DeleteElements();
        m_items.RemoveAll();
    }

private:
    void DeleteElements() {
        for (T* item : m_items) delete item;
    }

    ZebArray<T*> m_items;
};
