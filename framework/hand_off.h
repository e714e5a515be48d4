#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <mutex>
#include <optional>
#include <utility>

// Items on their way from the thread that makes them to the one that uses them, in order. The
// giver waits while `capacity` items wait, so that what is on its way stays small however much
// goes through. The giver closes it when it is done, or failed with an error the taker can ask
// for; the taker gets nothing more once every item is taken. A taker that fails lets go, so that
// a giver waiting for room, or giving later, is told at once instead of waiting for ever.
template <class T>
class ZebHandOff {
public:
    explicit ZebHandOff(size_t capacity) : m_capacity(capacity) {}
    ZebHandOff(const ZebHandOff&) = delete;
    ZebHandOff& operator=(const ZebHandOff&) = delete;

    // False, and the item dropped, once the taker has let go.
    bool Give(T&& item) {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [&] { return m_items.size() < m_capacity || m_abandoned; });
        if (m_abandoned) return false;
        m_items.push_back(std::move(item));
        m_changed.notify_all();
        return true;
    }
    void Close(std::exception_ptr error = nullptr) {
        std::lock_guard lock(m_mutex);
        m_closed = true;
        m_error = error;
        m_changed.notify_all();
    }
    // The next item; nothing once the giver has closed and every item is taken, or after LetGo.
    std::optional<T> Take() {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [&] { return !m_items.empty() || m_closed || m_abandoned; });
        if (m_items.empty()) return std::nullopt;
        std::optional<T> item(std::move(m_items.front()));
        m_items.pop_front();
        m_changed.notify_all();
        return item;
    }
    // The taker takes nothing more: what waits is dropped, and every Give fails from now on.
    void LetGo() noexcept {
        std::lock_guard lock(m_mutex);
        m_abandoned = true;
        m_items.clear();
        m_changed.notify_all();
    }
    std::exception_ptr Error() {
        std::lock_guard lock(m_mutex);
        return m_error;
    }

private:
    const size_t m_capacity;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<T> m_items;
    bool m_closed = false;
    bool m_abandoned = false;
    std::exception_ptr m_error;
};
