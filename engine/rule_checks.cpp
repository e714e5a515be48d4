#include "engine/rule_checks.h"

#include <Standard_Failure.hxx>
#include <algorithm>
#include <cmath>
#include <cwchar>
#include <map>
#include <set>

#include "engine/finding_text.h"
#include "engine/pair_search.h"
#include "framework/case_fold.h"

namespace {
constexpr double kLimitTolerance = 0.000001;

std::wstring Point(const gp_Pnt& p, double scale) {
    return L"(" + Number(p.X() * scale) + L", " + Number(p.Y() * scale) + L", " +
           Number(p.Z() * scale) + L")";
}

// One flag per part: does it match one of the names.
std::vector<bool> MatchAny(const Assembly& assembly, const std::vector<std::wstring>& names) {
    std::vector<bool> flags(assembly.parts.size(), false);
    for (size_t i = 0; i < flags.size(); ++i)
        for (const std::wstring& name : names)
            if (PartMatches(assembly.parts[i], name)) {
                flags[i] = true;
                break;
            }
    return flags;
}

bool InOneSubassembly(const AssemblyPart& a, const AssemblyPart& b) {
    return !a.subassembly.empty() && a.subassembly == b.subassembly;
}

// The exact work of a check: one result slot per candidate pair, filled in parallel, read in order.
template <class Result>
bool MeasurePairs(const std::vector<PartPair>& pairs, const CheckContext& context,
                  const std::function<Result(const PartPair&)>& measure,
                  std::vector<Result>& results) {
    results.assign(pairs.size(), Result{});
    return RunParallel(
        pairs.size(), context.threads, [&](size_t i) { results[i] = measure(pairs[i]); },
        [&](size_t done, size_t count) {
            if (context.progress) context.progress(count ? double(done) / double(count) : 1.0);
        },
        context.cancel);
}

struct PairOutcome {
    bool measured = false;
    bool failed = false;
    PairDistance distance;
    double volume = 0.0;
};

ZebFinding Unmeasured(const CheckContext& context, const AssemblyPart& a, const AssemblyPart& b) {
    return Finding(context, {a.path, b.path},
                   L"the kernel could not measure " + a.path + L" against " + b.path +
                       L"; check these parts by hand");
}

// The exact distance of each pair, spread over the processors, and with `volumes` the volume
// that touching pairs share; a pair the kernel cannot measure is marked failed. False when the
// check was cancelled.
bool MeasureDistances(const std::vector<AssemblyPart>& parts, const std::vector<PartPair>& pairs,
                      const CheckContext& context, bool volumes,
                      std::vector<PairOutcome>& outcomes) {
    return MeasurePairs<PairOutcome>(
        pairs, context,
        [&](const PartPair& pair) {
            PairOutcome outcome;
            try {
                outcome.distance = MeasureDistance(parts[pair.first], parts[pair.second]);
                if (volumes && outcome.distance.distance <= kTouchTolerance)
                    outcome.volume = CommonVolume(parts[pair.first], parts[pair.second]);
                outcome.measured = true;
            } catch (const Standard_Failure&) {
                outcome.failed = true;
            }
            return outcome;
        },
        outcomes);
}
}  // namespace

bool CheckInterference(const Assembly& assembly, const InterferenceOptions& options,
                       const CheckContext& context, std::vector<ZebFinding>& findings) {
    const std::vector<AssemblyPart>& parts = assembly.parts;
    const std::vector<bool> ignored = MatchAny(assembly, options.ignored);
    std::vector<bool> first, second;
    std::vector<std::pair<std::vector<bool>, std::vector<bool>>> rows;
    if (!options.allComponents && options.groups) {
        std::vector<std::wstring> a, b;
        for (const auto& [x, y] : options.table) {
            if (!x.empty()) a.push_back(x);
            if (!y.empty()) b.push_back(y);
        }
        first = MatchAny(assembly, a);
        second = MatchAny(assembly, b);
    } else if (!options.allComponents) {
        for (const auto& [x, y] : options.table)
            rows.emplace_back(MatchAny(assembly, {x}), MatchAny(assembly, {y}));
    }
    const auto wanted = [&](const PartPair& pair) {
        const auto [i, j] = pair;
        if (ignored[i] || ignored[j]) return false;
        if (!options.sameSubassembly && InOneSubassembly(parts[i], parts[j])) return false;
        if (options.allComponents) return true;
        if (options.groups) return (first[i] && second[j]) || (first[j] && second[i]);
        for (const auto& [a, b] : rows)
            if ((a[i] && b[j]) || (a[j] && b[i])) return true;
        return false;
    };
    std::vector<PartPair> pairs;
    for (const PartPair& pair : NearPairs(parts, 0.0))
        if (wanted(pair)) pairs.push_back(pair);

    std::vector<PairOutcome> outcomes;
    if (!MeasureDistances(parts, pairs, context, true, outcomes)) return false;

    const double cube = context.toReport * context.toReport * context.toReport;
    for (size_t k = 0; k < pairs.size(); ++k) {
        const AssemblyPart& a = parts[pairs[k].first];
        const AssemblyPart& b = parts[pairs[k].second];
        const PairOutcome& outcome = outcomes[k];
        if (outcome.failed) {
            findings.push_back(Unmeasured(context, a, b));
            continue;
        }
        if (outcome.distance.distance > kTouchTolerance) continue;
        // A shared volume below the kernel's own precision is a touch, not an overlap.
        const double volume = outcome.volume * cube;
        const bool overlaps = outcome.volume > 1e-6;
        if (!overlaps && !options.touchingInterferes) continue;
        if (overlaps && options.ignoreVolume) {
            // Limits compare with the same tolerance as the dialogs' checks.
            const double limit = *options.ignoreVolume * cube;
            if (options.ignoreInclusive ? volume <= limit + kLimitTolerance
                                        : volume < limit - kLimitTolerance)
                continue;
        }
        ZebFinding finding = Finding(context, {a.path, b.path},
                                     overlaps ? a.path + L" and " + b.path + L" interfere by " +
                                                    Number(volume) + L" " + context.unitText + L"^3"
                                              : a.path + L" and " + b.path + L" touch");
        finding.value = overlaps ? volume : 0.0;
        if (options.ignoreVolume) finding.limit = *options.ignoreVolume * cube;
        findings.push_back(std::move(finding));
    }
    return true;
}

bool CheckClearance(const Assembly& assembly, const ClearanceOptions& options,
                    const CheckContext& context, std::vector<ZebFinding>& findings) {
    const std::vector<AssemblyPart>& parts = assembly.parts;
    std::vector<std::pair<std::vector<bool>, std::vector<bool>>> rows;
    double largest = options.general.value_or(0.0);
    for (const ClearancePair& pair : options.pairs) {
        rows.emplace_back(MatchAny(assembly, {pair.first}), MatchAny(assembly, {pair.second}));
        largest = std::max(largest, pair.clearance);
    }
    // A pair named in the table is held to its own clearance, whatever the general one and the
    // subassembly choice say; other pairs to the general clearance.
    const auto limitOf = [&](const PartPair& pair) -> std::optional<double> {
        const auto [i, j] = pair;
        for (size_t r = 0; r < rows.size(); ++r)
            if ((rows[r].first[i] && rows[r].second[j]) || (rows[r].first[j] && rows[r].second[i]))
                return options.pairs[r].clearance;
        if (!options.general) return std::nullopt;
        if (!options.sameSubassembly && InOneSubassembly(parts[i], parts[j])) return std::nullopt;
        return options.general;
    };
    std::vector<PartPair> pairs;
    std::vector<double> limits;
    for (const PartPair& pair : NearPairs(parts, largest))
        if (const std::optional<double> limit = limitOf(pair)) {
            pairs.push_back(pair);
            limits.push_back(*limit);
        }

    std::vector<PairOutcome> outcomes;
    if (!MeasureDistances(parts, pairs, context, false, outcomes)) return false;

    const double scale = context.toReport;
    for (size_t k = 0; k < pairs.size(); ++k) {
        const AssemblyPart& a = parts[pairs[k].first];
        const AssemblyPart& b = parts[pairs[k].second];
        const PairOutcome& outcome = outcomes[k];
        if (outcome.failed) {
            findings.push_back(Unmeasured(context, a, b));
            continue;
        }
        const double distance = outcome.distance.distance;
        if (distance >= limits[k] - kTouchTolerance) continue;
        if (distance <= kTouchTolerance && !options.reportTouching) continue;
        ZebFinding finding =
            Finding(context, {a.path, b.path},
                    a.path + L" and " + b.path + L" are " + Number(distance * scale) + L" " +
                        context.unitText + L" apart, less than " + Number(limits[k] * scale) +
                        L"; closest points " + Point(outcome.distance.onFirst, scale) + L" and " +
                        Point(outcome.distance.onSecond, scale));
        finding.value = distance * scale;
        finding.limit = limits[k] * scale;
        findings.push_back(std::move(finding));
    }
    return true;
}

bool CheckContactMaterial(const Assembly& assembly, const ContactOptions& options,
                          const CheckContext& context, std::vector<ZebFinding>& findings) {
    if (options.rows.empty()) return true;
    const std::vector<AssemblyPart>& parts = assembly.parts;
    const std::vector<PartPair> pairs = NearPairs(parts, options.nearer.value_or(0.0));
    std::vector<PairOutcome> outcomes;
    if (!MeasureDistances(parts, pairs, context, false, outcomes)) return false;

    const auto onSide = [](const std::vector<std::wstring>& side, const std::wstring& material) {
        return std::find(side.begin(), side.end(), material) != side.end();
    };
    std::set<int> withoutMaterial;
    const double scale = context.toReport;
    for (size_t k = 0; k < pairs.size(); ++k) {
        const auto [i, j] = pairs[k];
        const AssemblyPart& a = parts[i];
        const AssemblyPart& b = parts[j];
        if (outcomes[k].failed) {
            findings.push_back(Unmeasured(context, a, b));
            continue;
        }
        const double distance = outcomes[k].distance.distance;
        const bool inContact =
            distance <= kTouchTolerance || (options.nearer && distance < *options.nearer);
        if (!inContact) continue;
        if (a.material.empty() || b.material.empty()) {
            if (a.material.empty()) withoutMaterial.insert(i);
            if (b.material.empty()) withoutMaterial.insert(j);
            continue;
        }
        const std::wstring ma = ZebFoldCase(a.material), mb = ZebFoldCase(b.material);
        for (const auto& [one, other] : options.rows) {
            if (!((onSide(one, ma) && onSide(other, mb)) || (onSide(other, ma) && onSide(one, mb))))
                continue;
            ZebFinding finding = Finding(
                context, {a.path, b.path},
                a.path + L" (" + a.material + L") and " + b.path + L" (" + b.material +
                    L") are in contact" +
                    (distance > kTouchTolerance
                         ? L", " + Number(distance * scale) + L" " + context.unitText + L" apart"
                         : std::wstring()));
            finding.value = distance * scale;
            if (options.nearer) finding.limit = *options.nearer * scale;
            findings.push_back(std::move(finding));
            break;
        }
    }
    for (int i : withoutMaterial)
        findings.push_back(
            Finding(context, {parts[i].path},
                    parts[i].path + L": no material; its contacts cannot be checked"));
    return true;
}

void CheckPreferredComponents(const Assembly& assembly, const std::vector<PreferredRow>& rows,
                              const CheckContext& context, std::vector<ZebFinding>& findings) {
    for (const AssemblyPart& part : assembly.parts)
        for (const PreferredRow& row : rows) {
            if (row.replaced.empty() || !PartMatches(part, row.replaced)) continue;
            std::wstring message = part.path + L" is " + row.replaced +
                                   L"; use the preferred component " +
                                   (row.preferred.empty() ? L"(none given)" : row.preferred);
            if (!row.alternative.empty()) message += L" or the alternative " + row.alternative;
            if (!row.description.empty()) message += L" (" + row.description + L")";
            findings.push_back(Finding(context, {part.path}, std::move(message)));
        }
}
