#include "framework/text_convert.h"

namespace {
void AppendUtf8(std::string& out, char32_t c) {
    if (c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) c = 0xFFFD;
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}
}  // namespace

std::string ToUtf8(std::wstring_view text) {
    // Settings texts are mostly ASCII: a leading ASCII run is copied in one pass.
    size_t ascii = 0;
    while (ascii < text.size() && static_cast<char32_t>(text[ascii]) < 0x80) ++ascii;
    std::string out(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(ascii));
    if (ascii == text.size()) return out;
    out.reserve(text.size() + (text.size() - ascii) * 3);
    for (wchar_t w : text.substr(ascii)) AppendUtf8(out, static_cast<char32_t>(w));
    return out;
}

std::wstring FromUtf8(std::string_view text) {
    size_t i = 0;
    const size_t n = text.size();
    while (i < n && static_cast<unsigned char>(text[i]) < 0x80) ++i;
    // The leading ASCII run widens in one pass; most texts end there.
    std::wstring out(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(i));
    if (i == n) return out;
    out.reserve(n);
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
            out += L'\uFFFD';
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
            out += L'\uFFFD';
            ++i;
            continue;
        }
        const bool overlong = (extra == 1 && c < 0x80) || (extra == 2 && c < 0x800) ||
                              (extra == 3 && c < 0x10000);
        if (overlong || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) c = 0xFFFD;
        out += static_cast<wchar_t>(c);
        i += extra + 1;
    }
    return out;
}
