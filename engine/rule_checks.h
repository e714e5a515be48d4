#pragma once

#include <atomic>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "engine/assembly.h"
#include "engine/engine_api.h"

// What one rule asks, its lengths already in kernel millimetres.

struct InterferenceOptions {
    bool allComponents = true;
    bool groups = false;  // the table's columns are two groups, not pairs
    std::vector<std::pair<std::wstring, std::wstring>> table;
    std::vector<std::wstring> ignored;  // components never checked
    bool sameSubassembly = true;
    bool touchingInterferes = false;
    // Interferences with a volume below (or at, when inclusive) this are not reported.
    std::optional<double> ignoreVolume;
    bool ignoreInclusive = false;
};

struct ClearancePair {
    std::wstring first, second;
    double clearance = 0.0;
};

struct ClearanceOptions {
    std::optional<double> general;
    std::vector<ClearancePair> pairs;  // empty when the table is switched off
    bool sameSubassembly = true;
    bool reportTouching = false;
};

struct ContactOptions {
    // Each row: the folded material names of its two sides, groups already expanded.
    std::vector<std::pair<std::vector<std::wstring>, std::vector<std::wstring>>> rows;
    std::optional<double> nearer;  // parts closer than this count as in contact
};

struct PreferredRow {
    std::wstring description, preferred, alternative, replaced;
};

// Where a check reports: the rule's name and severity, how to turn kernel millimetres into the
// report's unit, the threads to use, progress and cancel.
struct CheckContext {
    std::wstring rule;
    int severity = 0;
    double toReport = 1.0;  // kernel millimetres to the report's length unit
    std::wstring unitText;
    unsigned threads = 0;
    std::function<void(double)> progress;  // part of this check done, 0 to 1
    const std::atomic<bool>* cancel = nullptr;
};

// Each returns false when cancelled; findings are appended in a stable order.
bool CheckInterference(const Assembly& assembly, const InterferenceOptions& options,
                       const CheckContext& context, std::vector<ZebFinding>& findings);
bool CheckClearance(const Assembly& assembly, const ClearanceOptions& options,
                    const CheckContext& context, std::vector<ZebFinding>& findings);
bool CheckContactMaterial(const Assembly& assembly, const ContactOptions& options,
                          const CheckContext& context, std::vector<ZebFinding>& findings);
void CheckPreferredComponents(const Assembly& assembly, const std::vector<PreferredRow>& rows,
                              const CheckContext& context, std::vector<ZebFinding>& findings);
