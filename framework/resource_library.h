#pragma once

#include <string>
#include <vector>

#include "framework/vantor_export.h"

// A loaded resource library (res/<lang>/ZEBAssemblyRulesResu.so): string and bitmap lookup by
// numeric id.
class VANTOR_FW_API CZebResourceLibrary {
public:
    // Null when the file cannot be loaded or is not a resource library.
    static CZebResourceLibrary* Load(const std::wstring& path);
    ~CZebResourceLibrary();
    CZebResourceLibrary(const CZebResourceLibrary&) = delete;
    CZebResourceLibrary& operator=(const CZebResourceLibrary&) = delete;

    const std::wstring& GetPath() const { return m_path; }
    // Empty when the id is unknown; `found` tells the two apart.
    std::wstring LoadString(unsigned id, bool* found = nullptr) const;
    // Encoded image bytes (PNG); false when the id is unknown.
    bool LoadBitmap(unsigned id, const unsigned char** data, unsigned long* size) const;
    // Every string id the library holds, ascending.
    std::vector<unsigned> GetStringIds() const;

private:
    CZebResourceLibrary() = default;
    void* m_handle = nullptr;
    std::wstring m_path;
    const wchar_t* (*m_string)(unsigned) = nullptr;
    int (*m_bitmap)(unsigned, const unsigned char**, unsigned long*) = nullptr;
    const unsigned* (*m_ids)(unsigned*) = nullptr;
};

using ZebResourceHandle = const CZebResourceLibrary*;

// The current resource library of the process, where texts and images are looked up.
VANTOR_FW_API ZebResourceHandle ZebGetResourceHandle();
VANTOR_FW_API void ZebSetResourceHandle(ZebResourceHandle handle);

// String `id` of the current resource library; empty when there is none or it lacks the id.
VANTOR_FW_API std::wstring ZebLoadString(unsigned id);

// printf-style formatting of a loaded text with text arguments: each of %s, %ls, %d, %ld, %u,
// %f and %lf takes the next argument as it is, %% gives %. A placeholder with no argument left
// gives nothing, and surplus arguments are ignored, so a text never reads past its arguments.
VANTOR_FW_API std::wstring ZebFormatText(const std::wstring& format,
                                         const std::vector<std::wstring>& args);
// Number of argument-taking placeholders in `format`.
VANTOR_FW_API int ZebCountPlaceholders(const std::wstring& format);
