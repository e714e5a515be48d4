#include "engine/thread_designation.h"

#include <array>
#include <cmath>
#include <cwctype>

#include "engine/finding_text.h"

namespace {
// How near a modelled diameter must lie to a thread's to be read as it.
constexpr double kDiameterFit = 0.1;
// The minor diameter of an internal thread lies this many pitches below its size.
constexpr double kMinorDepth = 1.082532;

constexpr std::array kMetric{
    MetricThread{1.6, 0.35},  MetricThread{2.0, 0.4},  MetricThread{2.5, 0.45},
    MetricThread{3.0, 0.5},   MetricThread{4.0, 0.7},  MetricThread{5.0, 0.8},
    MetricThread{6.0, 1.0},   MetricThread{8.0, 1.25}, MetricThread{10.0, 1.5},
    MetricThread{12.0, 1.75}, MetricThread{14.0, 2.0}, MetricThread{16.0, 2.0},
    MetricThread{18.0, 2.5},  MetricThread{20.0, 2.5}, MetricThread{22.0, 2.5},
    MetricThread{24.0, 3.0},  MetricThread{27.0, 3.0}, MetricThread{30.0, 3.5},
    MetricThread{33.0, 3.5},  MetricThread{36.0, 4.0}, MetricThread{42.0, 4.5},
    MetricThread{48.0, 5.0},  MetricThread{56.0, 5.5}, MetricThread{64.0, 6.0}};

// Reads "12" or "1.25" at `at`; `at` moves past it. Negative when there is no digit.
double ReadNumber(const std::wstring& text, size_t& at) {
    const size_t from = at;
    while (at < text.size() && std::iswdigit(text[at])) ++at;
    if (at == from) return -1.0;
    if (at + 1 < text.size() && text[at] == L'.' && std::iswdigit(text[at + 1]))
        for (++at; at < text.size() && std::iswdigit(text[at]);) ++at;
    return std::stod(text.substr(from, at - from));
}

void SkipSpaces(const std::wstring& text, size_t& at) {
    while (at < text.size() && std::iswspace(text[at])) ++at;
}

// A designation starting with the "M" at `at`; `at` moves past what it took.
ThreadDesignation DesignationAt(const std::wstring& text, size_t& at) {
    size_t next = at + 1;
    ThreadDesignation thread;
    const double size = ReadNumber(text, next);
    if (size <= 0) return thread;
    thread.size = size;
    at = next;
    SkipSpaces(text, next);
    if (next < text.size() &&
        (text[next] == L'x' || text[next] == L'X' || text[next] == L'\u00d7')) {
        ++next;
        SkipSpaces(text, next);
        const double pitch = ReadNumber(text, next);
        if (pitch > 0 && pitch < size / 2) {
            thread.pitch = pitch;
            at = next;
        }
    }
    return thread;
}

bool StartsDesignation(const std::wstring& text, size_t at) {
    return std::towupper(text[at]) == L'M' && (at == 0 || !std::iswalnum(text[at - 1])) &&
           at + 1 < text.size() && std::iswdigit(text[at + 1]);
}
}  // namespace

std::span<const MetricThread> MetricThreads() { return kMetric; }

std::wstring ThreadDesignation::Text() const {
    return L"M" + Number(size) + (pitch > 0 ? L"x" + Number(pitch) : L"");
}

bool ThreadDesignation::Fits(const ThreadDesignation& other) const {
    constexpr double kSame = 1e-6;
    return std::fabs(size - other.size) < kSame &&
           (pitch == 0 || other.pitch == 0 || std::fabs(pitch - other.pitch) < kSame);
}

ThreadDesignation ThreadInName(const std::wstring& name) {
    for (size_t at = 0; at < name.size(); ++at)
        if (StartsDesignation(name, at))
            if (const ThreadDesignation thread = DesignationAt(name, at)) return thread;
    return {};
}

ThreadDesignation ReadThread(const std::wstring& text) {
    size_t at = 0;
    SkipSpaces(text, at);
    if (at == text.size() || !StartsDesignation(text, at)) return {};
    const ThreadDesignation thread = DesignationAt(text, at);
    SkipSpaces(text, at);
    return at == text.size() ? thread : ThreadDesignation{};
}

double InternalThreadSize(double bore, double hint) {
    double nominal = 0.0, other = 0.0;
    for (const MetricThread& t : kMetric) {
        const bool isNominal = std::fabs(bore - t.size) <= kDiameterFit;
        const bool isDrilled =
            std::fabs(bore - (t.size - t.coarsePitch)) <= kDiameterFit ||
            std::fabs(bore - (t.size - kMinorDepth * t.coarsePitch)) <= kDiameterFit;
        if ((isNominal || isDrilled) && std::fabs(t.size - hint) < 1e-6) return t.size;
        if (isNominal) nominal = t.size;
        if (isDrilled && other == 0.0) other = t.size;
    }
    return nominal > 0 ? nominal : other;
}
