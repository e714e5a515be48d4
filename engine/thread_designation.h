#pragma once

// Metric ISO threads as engineers write them: "M8" or "M8x1.25". Sizes and pitches in
// millimetres, whatever unit the rule set uses.
#include <span>
#include <string>

struct MetricThread {
    double size;
    double coarsePitch;
};

// The metric series with its coarse pitches, smallest first.
std::span<const MetricThread> MetricThreads();

struct ThreadDesignation {
    double size = 0.0;   // nominal diameter; 0: none
    double pitch = 0.0;  // 0: not known
    explicit operator bool() const { return size > 0; }
    std::wstring Text() const;  // "M8", "M8x1.25"
    // The same size, and the same pitch where both give one: "M8" fits "M8x1" and "M8x1.25", which
    // do not fit each other.
    bool Fits(const ThreadDesignation& other) const;
};

// The first designation in a name, without regard to letter case: "Bolt_m8x1" gives M8x1,
// "ISO 4017 M8x40" M8 (a number after the size is a pitch only when it is below half the size,
// otherwise a length). None when the name holds none.
ThreadDesignation ThreadInName(const std::wstring& name);
// A text that is a designation and nothing else, spaces aside: "m8 x 1.25". None otherwise.
ThreadDesignation ReadThread(const std::wstring& text);

// The size of an internal thread (a nut's bore, a tapped hole) from its bore, which drawings
// model at the thread's nominal, tap-drill or minor diameter (within 0.1 mm). Where the bore
// reads as more than one size, `hint` (the size of what screws into it) wins when it is one of
// them, else the nominal reading. 0 when the bore gives no size.
double InternalThreadSize(double bore, double hint);
