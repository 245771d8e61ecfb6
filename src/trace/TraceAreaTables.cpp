#include "trace/TraceAreaTables.h"

#include "trace/UnknownArea.h"

#include <kelvobase/TraceArea.h>

namespace KelvoBase
{

// The order of the rows is the order of the bits.

constinit const std::array<MainAreaRow, 12> mainAreaTable = {{
    {"KelvoBase"},
    {"CoreObjects"},
    {"AttributeManagement"},
    {"Partitions"},
    {"Evaluators"},
    {"Rewriting"},
    {"Persistence"},
    {"Numerics"},
    {"Summaries"},
    {"Learners"},
    {"Searches"},
    {"App"},
}};

constinit const std::array<SubAreaRow, 30> subAreaTable = {{
    {"Adjuster", "CoreObjects"},
    {"Pairing", "CoreObjects"},
    {"AttributeManager", "AttributeManagement"},
    {"EvalAlpha", "Evaluators"},
    {"EvalBeta", "Evaluators"},
    {"EvalGamma", "Evaluators"},
    {"EvalDelta", "Evaluators"},
    {"EvalEpsilon", "Evaluators"},
    {"EvalExtDigest", "Evaluators"},
    {"EvalZetaInfo", "Evaluators"},
    {"EvalEtaInfo", "Evaluators"},
    {"Tavelin", "Evaluators"},
    {"Outline", "Evaluators"},
    {"DigestCodes", "Evaluators"},
    {"BetaParametrizer", "EvalBeta"},
    {"SeriesProcessing", "Numerics"},
    {"SeriesPreProcessing", "Numerics"},
    {"SeriesTransform", "Numerics"},
    {"SeriesTools", "Numerics"},
    {"StreamProcessing", "Numerics"},
    {"AttributeTranslationTable", "Persistence"},
    {"LinkTable", "Persistence"},
    {"AlphaFileConverter", "Persistence"},
    {"BetaFileConverter", "Persistence"},
    {"GammaFileConverter", "Persistence"},
    {"DeltaFileConverter", "Persistence"},
    {"RewriteRule", "Rewriting"},
    {"RewriteNetwork", "Rewriting"},
    // Required: both names stand above, so these rows change nothing. Moving the first of them up, or letting
    // a second parent count, would show conversions to whoever selects "Rewriting".
    {"GammaFileConverter", "Rewriting"},
    {"DeltaFileConverter", "Persistence"},
}};

void registerTables(TraceAreaMgr& registry, std::span<const MainAreaRow> mainAreas,
                    std::span<const SubAreaRow> subAreas)
{
    for (const MainAreaRow& row : mainAreas) {
        registry.registerArea(row.name, {});
    }
    for (const SubAreaRow& row : subAreas) {
        if (const TraceAreaEntry* parent = registry.searchId(row.parent)) {
            registry.registerArea(row.name, parent->mask);
        } else {
            warnOfUnknownParent(row.parent);
        }
    }
}

} // namespace KelvoBase
