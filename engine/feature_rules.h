#pragma once

// The rules that look at holes, slots and fasteners. Lengths in kernel millimetres.
#include <optional>
#include <string>
#include <vector>

#include "engine/fasteners.h"
#include "engine/features.h"
#include "engine/rule_checks.h"
#include "engine/thread_designation.h"

// A limit with its operator: "<", "<=", ">=", "=" against `value`, or a range from `value` to
// `upper`.
struct Bound {
    int op = 0;
    double value = 0.0;
    double upper = 0.0;
    bool Holds(double measured, double tolerance) const;
    std::wstring Text(double scale,
                      const std::wstring& unit) const;  // "<= 0.5 mm", "between 1 and 2 mm"
};

struct HoleAlignmentOptions {
    Bound offset;                       // axis offset between aligned holes
    Bound diameters;                    // difference of their diameters
    bool through = true, blind = true;  // which holes are checked
};

struct SlotAlignmentOptions {
    Bound offset;               // across the slots' width
    std::optional<Bound> ends;  // between their ends, when switched on
    bool sameWidth = false;
    bool sameDirection = false;
};

struct NamedBound {
    std::wstring name;
    Bound bound;
};

struct FastenerClearanceOptions {
    std::vector<NamedBound> play;       // condition A: radial play in each hole passed
    std::vector<NamedBound> headSpace;  // condition B: free space around the head
};

struct FastenerAlignmentOptions {
    Bound offset;
    bool parallel = false;
};

// Tool spaces as multiples of the head's diameter.
struct AccessibilityOptions {
    double tool = 1.2;
    std::optional<double> second;  // when switched on
};

struct RationalizationOptions {
    bool sameHead = true, sameMaterial = true;
    std::optional<Bound> lengthStep, diameterStep;  // between consecutive sizes, when switched on
    bool together = true;                           // bolts and screws compared with each other
};

struct ThreadPairOptions {
    // The recommended pairs as typed; a cell that is no metric designation fits no thread.
    std::vector<std::pair<std::wstring, std::wstring>> pairs;
    // Pitches that complete a bare size; the first of a size wins.
    std::vector<ThreadDesignation> pitches;
};

// What a fastener rule looks at: the parts, their features and the fasteners of its names.
struct FastenerScene {
    const std::vector<AssemblyPart>& parts;
    const std::vector<PartFeatures>& features;
    AssemblyFasteners fasteners;
};

// The features of the assembly, recognised when a rule first needs them, and the fasteners of
// one set of names.
class FeatureCache {
public:
    explicit FeatureCache(const Assembly& assembly) : m_assembly(assembly) {}
    // False when cancelled.
    bool Recognize(const CheckContext& context);
    const Assembly& assembly() const { return m_assembly; }
    const std::vector<PartFeatures>& features() const { return *m_features; }
    // After Recognize.
    FastenerScene Scene(const std::vector<std::wstring>& names) const {
        return {m_assembly.parts, *m_features, FindFasteners(m_assembly, *m_features, names)};
    }

private:
    const Assembly& m_assembly;
    std::optional<std::vector<PartFeatures>> m_features;
};

// Each returns false when cancelled; findings are appended in part order.
// Holes and slots of fasteners (a nut's bore, a slotted head) are left to the fastener rules.
bool CheckHoleAlignment(FeatureCache& cache, const HoleAlignmentOptions& options,
                        const std::vector<std::wstring>& fastenerNames, const CheckContext& context,
                        std::vector<ZebFinding>& findings);
bool CheckSlotAlignment(FeatureCache& cache, const SlotAlignmentOptions& options,
                        const std::vector<std::wstring>& fastenerNames, const CheckContext& context,
                        std::vector<ZebFinding>& findings);
bool CheckFastenerClearance(FeatureCache& cache, const FastenerClearanceOptions& options,
                            const std::vector<std::wstring>& fastenerNames,
                            const CheckContext& context, std::vector<ZebFinding>& findings);
bool CheckFastenerEngagement(FeatureCache& cache, const std::vector<NamedBound>& lengths,
                             const std::vector<std::wstring>& fastenerNames,
                             const CheckContext& context, std::vector<ZebFinding>& findings);
bool CheckFastenerAlignment(FeatureCache& cache, const FastenerAlignmentOptions& options,
                            const std::vector<std::wstring>& fastenerNames,
                            const CheckContext& context, std::vector<ZebFinding>& findings);

bool CheckFastenerAccessibility(FeatureCache& cache, const AccessibilityOptions& options,
                                const std::vector<std::wstring>& fastenerNames,
                                const CheckContext& context, std::vector<ZebFinding>& findings);
bool CheckRecommendedThreads(FeatureCache& cache, const ThreadPairOptions& options,
                             const std::vector<std::wstring>& fastenerNames,
                             const CheckContext& context, std::vector<ZebFinding>& findings);
bool CheckRationalization(FeatureCache& cache, const RationalizationOptions& options,
                          const std::vector<std::wstring>& fastenerNames,
                          const CheckContext& context, std::vector<ZebFinding>& findings);

// "9 mm": a length in the report's unit.
std::wstring LengthText(double value, const CheckContext& context);
// A finding whose value broke `bound`; the message gets the allowed range.
ZebFinding BoundFinding(const CheckContext& context, std::vector<std::wstring> parts,
                        std::wstring message, double value, const Bound& bound);
// How findings name a hole: "hole 9 mm of as1/plate".
std::wstring HoleLabel(const Hole& hole, const AssemblyPart& part, const CheckContext& context);
