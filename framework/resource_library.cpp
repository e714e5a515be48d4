#include "framework/resource_library.h"

#include <dlfcn.h>

#include "framework/text_convert.h"

namespace {
ZebResourceHandle g_current = nullptr;

// Length of the placeholder at format[i] (which is '%'), 0 when it is not one that takes an
// argument.
size_t PlaceholderLength(const std::wstring& f, size_t i) {
    static const wchar_t* const kForms[] = {L"%ls", L"%ld", L"%lf", L"%s", L"%d", L"%u", L"%f"};
    for (const wchar_t* form : kForms) {
        const size_t n = std::char_traits<wchar_t>::length(form);
        if (f.compare(i, n, form) == 0) return n;
    }
    return 0;
}
}  // namespace

CZebResourceLibrary* CZebResourceLibrary::Load(const std::wstring& path) {
    void* handle = dlopen(ToUtf8(path).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle) return nullptr;
    auto* lib = new CZebResourceLibrary();
    lib->m_handle = handle;
    lib->m_path = path;
    lib->m_string = reinterpret_cast<const wchar_t* (*)(unsigned)>(dlsym(handle, "ZEBResString"));
    lib->m_bitmap = reinterpret_cast<int (*)(unsigned, const unsigned char**, unsigned long*)>(
        dlsym(handle, "ZEBResBitmap"));
    lib->m_ids = reinterpret_cast<const unsigned* (*)(unsigned*)>(dlsym(handle, "ZEBResStringIds"));
    if (!lib->m_string) {
        delete lib;
        return nullptr;
    }
    return lib;
}

CZebResourceLibrary::~CZebResourceLibrary() {
    if (m_handle) dlclose(m_handle);
}

std::wstring CZebResourceLibrary::LoadString(unsigned id, bool* found) const {
    const wchar_t* text = m_string ? m_string(id) : nullptr;
    if (found) *found = text != nullptr;
    return text ? std::wstring(text) : std::wstring();
}

bool CZebResourceLibrary::LoadBitmap(unsigned id, const unsigned char** data,
                                     unsigned long* size) const {
    return m_bitmap && data && size && m_bitmap(id, data, size) != 0;
}

std::vector<unsigned> CZebResourceLibrary::GetStringIds() const {
    std::vector<unsigned> ids;
    if (!m_ids) return ids;
    unsigned count = 0;
    const unsigned* first = m_ids(&count);
    ids.assign(first, first + count);
    return ids;
}

ZebResourceHandle ZebGetResourceHandle() { return g_current; }
void ZebSetResourceHandle(ZebResourceHandle handle) { g_current = handle; }

std::wstring ZebLoadString(unsigned id) {
    return g_current ? g_current->LoadString(id) : std::wstring();
}

std::wstring ZebFormatText(const std::wstring& format, const std::vector<std::wstring>& args) {
    std::wstring out;
    out.reserve(format.size() + 32);
    size_t next = 0;
    for (size_t i = 0; i < format.size(); ++i) {
        if (format[i] != L'%') {
            out += format[i];
            continue;
        }
        if (i + 1 < format.size() && format[i + 1] == L'%') {
            out += L'%';
            ++i;
            continue;
        }
        if (const size_t n = PlaceholderLength(format, i)) {
            if (next < args.size()) out += args[next];
            ++next;
            i += n - 1;
            continue;
        }
        out += L'%';
    }
    return out;
}

int ZebCountPlaceholders(const std::wstring& format) {
    int count = 0;
    for (size_t i = 0; i < format.size(); ++i) {
        if (format[i] != L'%') continue;
        if (i + 1 < format.size() && format[i + 1] == L'%') {
            ++i;
            continue;
        }
        if (const size_t n = PlaceholderLength(format, i)) {
            ++count;
            i += n - 1;
        }
    }
    return count;
}
