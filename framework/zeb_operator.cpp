#include "framework/zeb_operator.h"

#include "framework/case_fold.h"
#include "framework/zeb_types.h"

namespace {
struct OperatorText {
    int32_t code;
    const wchar_t* text;
};
constexpr OperatorText kOperators[] = {{ZebOp_LessEqual, L"<="},    {ZebOp_Less, L"<"},
                                       {ZebOp_Equal, L"="},         {ZebOp_Greater, L">"},
                                       {ZebOp_GreaterEqual, L">="}, {ZebOp_Range, L"RANGE"}};
}  // namespace

const wchar_t* ZebOperatorText(int32_t code) {
    for (const OperatorText& op : kOperators)
        if (op.code == code) return op.text;
    return nullptr;
}

int32_t ZebOperatorFromText(std::wstring_view text) {
    for (const OperatorText& op : kOperators)
        if (ZebEqualsNoCase(text, op.text)) return op.code;
    return 0;
}
