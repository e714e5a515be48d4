#include "framework/text_convert.h"

char* WriteUtf8(char32_t c, char* out) {
    if (c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) c = 0xFFFD;
    if (c < 0x80) {
        *out++ = static_cast<char>(c);
    } else if (c < 0x800) {
        *out++ = static_cast<char>(0xC0 | (c >> 6));
        *out++ = static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        *out++ = static_cast<char>(0xE0 | (c >> 12));
        *out++ = static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        *out++ = static_cast<char>(0x80 | (c & 0x3F));
    } else {
        *out++ = static_cast<char>(0xF0 | (c >> 18));
        *out++ = static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        *out++ = static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        *out++ = static_cast<char>(0x80 | (c & 0x3F));
    }
    return out;
}

void AppendUtf8(std::string& out, std::wstring_view text) {
    // Settings texts are mostly ASCII: a leading ASCII run is narrowed in place, in one pass.
    const size_t start = out.size();
    out.resize(start + text.size());
    char* narrow = out.data() + start;
    size_t ascii = 0;
    for (; ascii < text.size() && static_cast<char32_t>(text[ascii]) < 0x80; ++ascii)
        narrow[ascii] = static_cast<char>(text[ascii]);
    out.resize(start + ascii);
    if (ascii == text.size()) return;
    out.resize(out.size() + (text.size() - ascii) * 4);
    char* end = out.data() + start + ascii;
    for (wchar_t w : text.substr(ascii)) end = WriteUtf8(static_cast<char32_t>(w), end);
    out.resize(static_cast<size_t>(end - out.data()));
}

std::string ToUtf8(std::wstring_view text) {
    std::string out;
    AppendUtf8(out, text);
    return out;
}

size_t Utf8ToWide(std::string_view text, wchar_t* out) {
    size_t i = 0;
    const size_t n = text.size();
    // The leading ASCII run widens in one pass; most texts end there.
    while (i < n && static_cast<unsigned char>(text[i]) < 0x80) {
        out[i] = static_cast<wchar_t>(text[i]);
        ++i;
    }
    size_t written = i;
    while (i < n) {
        const unsigned char b = static_cast<unsigned char>(text[i]);
        int extra = 0;
        char32_t c = 0;
        if (b < 0x80) {
            c = b;
        } else if ((b & 0xE0) == 0xC0) {
            c = b & 0x1F;
            extra = 1;
        } else if ((b & 0xF0) == 0xE0) {
            c = b & 0x0F;
            extra = 2;
        } else if ((b & 0xF8) == 0xF0) {
            c = b & 0x07;
            extra = 3;
        } else {
            out[written++] = L'\uFFFD';
            ++i;
            continue;
        }
        bool ok = true;
        for (int k = 1; k <= extra; ++k) {
            if (i + k >= n || (static_cast<unsigned char>(text[i + k]) & 0xC0) != 0x80) {
                ok = false;
                break;
            }
            c = (c << 6) | (static_cast<unsigned char>(text[i + k]) & 0x3F);
        }
        if (!ok) {
            out[written++] = L'\uFFFD';
            ++i;
            continue;
        }
        const bool overlong =
            (extra == 1 && c < 0x80) || (extra == 2 && c < 0x800) || (extra == 3 && c < 0x10000);
        if (overlong || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) c = 0xFFFD;
        out[written++] = static_cast<wchar_t>(c);
        i += extra + 1;
    }
    return written;
}

std::wstring FromUtf8(std::string_view text) {
    std::wstring out(text.size(), L'\0');
    out.resize(Utf8ToWide(text, out.data()));
    return out;
}
