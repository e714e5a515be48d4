#include "host/param_text.h"

#include <charconv>

#include "framework/param_storage.h"
#include "framework/text_convert.h"
#include "framework/zeb_operator.h"

namespace {
std::string Text(double v) {
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, v);
    return std::string(buffer, result.ptr);
}
std::string Text(int32_t v) { return std::to_string(v); }
std::string Text(long v) { return std::to_string(v); }
std::string Text(uint32_t v) { return std::to_string(v); }
std::string Text(bool v) { return v ? "true" : "false"; }
std::string Text(const std::wstring& v) { return "\"" + ToUtf8(v) + "\""; }
std::string Text(ZebOpaque) { return "(opaque)"; }
std::string Text(const ZebRow& row) {
    std::string text = "[";
    for (size_t i = 0; i < row.size(); ++i) text += (i ? " | " : "") + ToUtf8(row[i]);
    return text + "]";
}

template <class T>
std::string ValuesText(const ZebTypedParam<T>* p, size_t from) {
    std::string text;
    for (size_t i = from; i < static_cast<size_t>(p->values.GetSize()); ++i)
        text += (text.empty() ? "" : " ") + Text(p->values[static_cast<int32_t>(i)]);
    return text;
}
}  // namespace

const char* ParamTypeName(int32_t type) {
    static const char* const names[] = {"int",    "long",   "bool",     "double",
                                        "string", "opaque", "unsigned", "row"};
    return type >= 1 && type <= 8 ? names[type - 1] : "unknown";
}

std::string ParamOperatorText(const CZebParamStorage& param) {
    const int32_t op = param.GetParam()->op;
    const wchar_t* text = ZebOperatorText(op);
    return text ? ToUtf8(text) : std::to_string(op);
}

std::string ParamValuesText(const CZebParamStorage& p, size_t from) {
    switch (p.GetType()) {
        case ZebType_Int:
            return ValuesText(p.As<int32_t>(), from);
        case ZebType_Long:
            return ValuesText(p.As<long>(), from);
        case ZebType_Bool:
            return ValuesText(p.As<bool>(), from);
        case ZebType_Double:
            return ValuesText(p.As<double>(), from);
        case ZebType_String:
            return ValuesText(p.As<std::wstring>(), from);
        case ZebType_Opaque:
            return ValuesText(p.As<ZebOpaque>(), from);
        case ZebType_Unsigned:
            return ValuesText(p.As<uint32_t>(), from);
        case ZebType_Row:
            return ValuesText(p.As<ZebRow>(), from);
        default:
            return {};
    }
}
